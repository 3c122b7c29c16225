// How column types, names of XML types and formaters belong together.
#pragma once

#include <cstdint>
#include <string_view>

namespace qv {

// The column type (record_list.h) of an XML type name, case included; 0 for an unknown name.
std::int32_t ColumnTypeOf(std::u16string_view xmlTypeName);

// The name under which a column is written: one for each type, "Undefined" for those that no name leads to
// and for unknown types.
std::u16string_view XmlTypeNameOf(std::int32_t columnType);

// The type name that the factory of formaters knows; empty for a type without.
std::u16string_view FormaterNameOf(std::int32_t columnType);

}  // namespace qv
