// How many rows of a batch ended, and how.
#pragma once

#include <cstdint>
#include <vector>

namespace qv::cli {

struct BatchCounts {
  std::int64_t done = 0;
  std::int64_t failed = 0;
  std::int64_t unknown = 0;
  std::int64_t earlier = 0;                  // of all of these: before this start, by the journal
  std::vector<std::int64_t> firstUnknown{};  // at most 20

  std::int64_t Ended() const noexcept { return done + failed + unknown; }
};

}  // namespace qv::cli
