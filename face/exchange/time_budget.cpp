#include "face/exchange/time_budget.h"

#include <algorithm>

namespace scriptwells {

using Clock = std::chrono::steady_clock;

TimeBudget::TimeBudget(std::int64_t milliseconds) noexcept
    : limit_(milliseconds), start_(milliseconds > 0 ? Clock::now() : Clock::time_point()) {}

std::int64_t TimeBudget::Left() const noexcept {
  if (limit_ <= 0) return 0;
  const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_).count();
  return std::max<std::int64_t>(1, limit_ - passed);
}

}  // namespace scriptwells
