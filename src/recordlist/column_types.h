// Maps column types, names of XML types and formaters to each other.
#pragma once

#include <cstdint>
#include <string_view>

namespace qv {

// The column type (record_list.h) of a case-sensitive XML type name; 0 for an unknown name.
std::int32_t ColumnTypeOf(std::u16string_view xmlTypeName);

// The XML type name of a column in output: one for each type; "Undefined" for types without a name and for
// unknown types.
std::u16string_view XmlTypeNameOf(std::int32_t columnType);

// The type name for the factory of formaters; empty for a type without a formater.
std::u16string_view FormaterNameOf(std::int32_t columnType);

}  // namespace qv
