// A duration's fields as one line, read through its properties and not through its text form:
// "year/month/day hour:minute:second", and " negative N" behind it when that field is not 0.
#pragma once

#include <cstdio>
#include <string>

#include "values/duration_impl.h"

namespace qv {

inline std::string State(DurationImpl& duration) {
  char line[160];
  std::snprintf(line, sizeof line, "%d/%d/%d %d:%d:%.17g", duration.get_Year(), duration.get_Month(),
                duration.get_Day(), duration.get_Hour(), duration.get_Min(), duration.get_Sec());
  const int negative = duration.get_Negative();
  return negative == 0 ? line : std::string(line) + " negative " + std::to_string(negative);
}

}  // namespace qv
