// The line that shows the progress of a transfer.
#pragma once

#include <cstdint>
#include <string>

namespace qv::cli {

struct ProgressState {
  std::string name;            // of the file, or "upload"; any bytes
  std::int64_t done = 0;       // bytes
  std::int64_t total = -1;     // bytes; negative if unknown
  double seconds = 0;          // since the start
  std::int64_t earlier = 0;    // of those done: before the start
  const char* unit = nullptr;  // what is counted in place of bytes, such as "rows"
};

// "512 B", "1.5 kB", "12.3 MB": in powers of 1000.
std::string SizeText(std::int64_t bytes);

// "0:07", "12:34", "1:02:03", rounded up to the second; "--:--" for 100 hours and more, and for NaN.
std::string TimeText(double seconds);

// At most `columns` - 1 columns, so that no terminal wraps it:
//   report.pdf  42% [########            ] 12.3 MB of 29.3 MB  4.1 MB/s  0:05 left
//   report.pdf  12.3 MB  4.1 MB/s
//   rows.csv  42% [########            ] 420 of 1000 rows  81 rows/s  0:08 left
// Parts that do not fit are left out: the bar, the time, the rate, the sizes, the name, in this order. Empty
// if not even the percentage fits. Control characters of the name are escaped, and a long name is cut.
std::string ProgressLine(const ProgressState& state, int columns);

}  // namespace qv::cli
