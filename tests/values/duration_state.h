// What the tests of durations share: a duration's fields as one line, and the failures of its text.
#pragma once

#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "values/duration_impl.h"

namespace qv {

constexpr char kCapitals[] =
    "EQvException 0x00000000 Invalid duration format:  only capital letters are allowed for separators.";
constexpr char kMinus[] =
    "EQvException 0x00000000 Invalid duration format:  '-' is allowd only in the beginning of the string.";
constexpr char kPlaceOfP[] =
    "EQvException 0x00000000 Invalid duration format:  'P' is allowd only in the beginning of the string or "
    "after '-'.";

using TextList = std::initializer_list<std::u16string_view>;

// Read through its properties and not through its text form: "year/month/day hour:minute:second", and
// " negative N" after it when that field is not 0.
inline std::string State(DurationImpl& duration) {
  char line[160];
  static_cast<void>(std::snprintf(line, sizeof line, "%d/%d/%d %d:%d:%.17g", duration.get_Year(),
                                  duration.get_Month(), duration.get_Day(), duration.get_Hour(),
                                  duration.get_Min(), duration.get_Sec()));
  const int negative = duration.get_Negative();
  return negative == 0 ? line : std::string(line) + " negative " + std::to_string(negative);
}

// What reading a text throws.
inline std::string Reading(DurationImpl& duration, const WideString& text) {
  return Thrown([&] { duration.SetText(text); });
}

}  // namespace qv
