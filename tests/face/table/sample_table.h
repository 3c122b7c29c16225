// Tables for the tests of this room.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "face/table/table_access.h"
#include "fixtures/variant_makers.h"
#include "tests/tools/table_builder.h"

namespace scriptwells {

inline Table BuiltTable(const std::vector<qv::cli::testing::BuiltColumn>& columns,
                        const std::vector<qv::cli::testing::BuiltRow>& rows) {
  return TableAccess::Make(qv::cli::testing::BuildTable(columns, rows));
}

inline qv::Variant DurationCell(const char16_t* text) {
  return qv::Variant::FromObject(qv::CreateDuration(text).get());
}

// The last row has no cells.
inline Table Cities() {
  return BuiltTable(
      {{u"city", qv::kColumnString}, {u"people", qv::kColumnInt}, {u"founded", qv::kColumnDate}},
      {{qv::Text(u"Rome"), qv::Int(2748109), qv::Date(-693593)},
       {qv::Text(u"Brasilia, DF"), qv::Int(-1), qv::Date(22027)},
       {}});
}

// The message of the failure with its phase in front, or "none".
inline std::string Failure(const std::function<void()>& action) {
  try {
    action();
  } catch (const ConversionError& error) {
    return "conversion: " + error.message();
  } catch (const Error& error) {
    return std::string("error (") + ToString(error.phase()) + "): " + error.message();
  }
  return "none";
}

}  // namespace scriptwells
