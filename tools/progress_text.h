// The line that tells how far a transfer is: values in, text out.
#pragma once

#include <cstdint>
#include <string>

namespace qv::cli {

struct ProgressState {
  std::string name;         // of the file, or what else is under way; any bytes
  std::int64_t done = 0;    // bytes
  std::int64_t total = -1;  // bytes; below 0 when nobody knows
  double seconds = 0;       // since the start
};

// "512 B", "1.5 kB", "12.3 MB": in powers of 1000.
std::string SizeText(std::int64_t bytes);

// "0:07", "12:34", "1:02:03", rounded up to the second; "--:--" for 100 hours and more, and for no number.
std::string TimeText(double seconds);

// At most `columns` - 1 columns, so that no terminal wraps it:
//   report.pdf  42% [########            ] 12.3 MB of 29.3 MB  4.1 MB/s  0:05 left
//   report.pdf  12.3 MB  4.1 MB/s
// What does not fit is left out: the bar, the time, the rate, the sizes, the name, in this order; empty when
// not even the percentage does. The name is shown without control characters, its end cut where it is long.
std::string ProgressLine(const ProgressState& state, int columns);

}  // namespace qv::cli
