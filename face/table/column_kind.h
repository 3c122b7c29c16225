// The types of columns.
#pragma once

#include <cstdint>

#include "scriptwells/value.h"

namespace scriptwells {

struct ColumnKind {
  std::int32_t columnType;  // ColumnType in record_list.h
  const char* name;
  Type type;
};

// The kind with the name "unknown" and the type kEmpty for a type that is not known.
const ColumnKind& KindOf(std::int32_t columnType) noexcept;

}  // namespace scriptwells
