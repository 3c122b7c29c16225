// Durations: their text as in ISO 8601 and XML Schema. All functions are pure and thread-safe.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// Counts of each unit, none below 0. Nothing carries over: 90 seconds stay 90 seconds.
struct Duration {
  bool negative = false;
  int years = 0;
  int months = 0;
  int days = 0;
  int hours = 0;
  int minutes = 0;
  double seconds = 0;
};

// The whole counts in the order of the text: the name that scripts see, and the letter after the number.
struct DurationField {
  const char* name;
  char mark;
  bool clock;  // Comes after the "T".
  int Duration::*count;
};
inline constexpr DurationField kDurationFields[] = {
    {"years", 'Y', false, &Duration::years},    {"months", 'M', false, &Duration::months},
    {"days", 'D', false, &Duration::days},      {"hours", 'H', true, &Duration::hours},
    {"minutes", 'M', true, &Duration::minutes},
};

// Reads texts such as "P1Y2M3DT4H5M6.5S"; false for another form. At least one part has to be there, and one
// after the "T"; "P0" is an empty duration. A leading "-" makes it negative. Whole counts go up to
// 2147483647; seconds may have a fraction and an exponent ("1.23457e+07"), since clients write them. White
// space around the text is ignored; `result` is undefined after a failure.
bool ParseDuration(std::string_view text, Duration& result);

// Counts of 0 are left out, all 0 is "P0". The seconds have no exponent, and the fewest digits that read
// back.
std::string FormatDuration(const Duration& duration);

}  // namespace qv::devservice
