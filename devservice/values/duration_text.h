// Spans of time: their text, shaped as ISO 8601 and XML Schema say. All functions are pure and thread-safe.
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

// The whole counts in the order of the text: the name that scripts see, and the letter behind the number.
struct DurationField {
  const char* name;
  char mark;
  bool clock;  // Stands behind the "T".
  int Duration::*count;
};
inline constexpr DurationField kDurationFields[] = {
    {"years", 'Y', false, &Duration::years},    {"months", 'M', false, &Duration::months},
    {"days", 'D', false, &Duration::days},      {"hours", 'H', true, &Duration::hours},
    {"minutes", 'M', true, &Duration::minutes},
};

// Reads "P1Y2M3DT4H5M6.5S" and the like; false for another form. Every part may be left out, but one has to
// be there, and one behind the "T"; "P0" is nothing at all. A "-" in front makes it negative. Whole counts go
// up to 2147483647; seconds may have a fraction and an exponent ("1.23457e+07"), since clients write so.
// White space around the text is passed over; `result` is undefined after a failure.
bool ParseDuration(std::string_view text, Duration& result);

// Counts of 0 are left out, all 0 is "P0". The seconds have no exponent, and the fewest digits that read
// back.
std::string FormatDuration(const Duration& duration);

}  // namespace qv::devservice
