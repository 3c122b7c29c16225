// Parses durations strictly, without creating an object.
#pragma once

#include <cstdint>
#include <string>

namespace qv::cli {

struct DurationFields {
  bool negative = false;
  std::int16_t years = 0;
  std::int16_t months = 0;
  std::int16_t days = 0;
  std::int16_t hours = 0;
  std::int16_t minutes = 0;
  double seconds = 0;
};

// "P1Y2M3DT4H5M6.5S", with "-" in front or not: at least one field, in this order, whole numbers up to 32767
// except for the seconds; also "P0". Throws Failure (kLocal), whose message is the reason alone.
DurationFields ScanDuration(const std::string& text);

}  // namespace qv::cli
