// The types that a column of a table can have.
#pragma once

#include <string_view>

#include "devservice/values/value_types.h"

namespace qv::devservice {

struct ColumnType {
  const char* name;      // In the script API.
  const char* wireName;  // The text of xsd:type.
  const char* value;     // The value type whose texts the cells have.
};

// The row with this exact name, or null. Rows live for the whole process.
const ColumnType* FindColumnType(std::string_view name);

// The names for a message, separated by ", ".
std::string ColumnTypeNames();

}  // namespace qv::devservice
