// The time left for several exchanges with a server together.
#pragma once

#include <chrono>
#include <cstdint>

namespace scriptwells {

class TimeBudget {
 public:
  // Begins now. 0: no limit.
  explicit TimeBudget(std::int64_t milliseconds) noexcept;

  // Milliseconds, as HttpOptions::totalTimeout wants them: at least 1, and 0 for no limit.
  std::int64_t Left() const noexcept;

 private:
  std::int64_t limit_;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace scriptwells
