#include "components/http/rate_meter.h"

#include <algorithm>
#include <string>

#include "components/http/http_error.h"

namespace qv {
namespace {

using std::chrono::milliseconds;

constexpr std::int64_t kLongestWindow = std::int64_t{1000} * 60 * 60 * 24 * 365;  // so that no sum overflows

}  // namespace

RateMeter::RateMeter(const HttpOptions& options) noexcept
    : bytesPerSecond_(options.minBytesPerSecond),
      window_(milliseconds(std::min(options.rateWindow, kLongestWindow))) {}

void RateMeter::Count(std::size_t bytes) noexcept {
  if (!running_) StartWindow();
  running_ = true;
  bytes_ += static_cast<double>(bytes);
}

void RateMeter::StartWindow() noexcept {
  bytes_ = 0;
  waited_ = Duration::zero();
}

void RateMeter::Wait(Duration time) noexcept {
  if (IsRunning()) waited_ += time;
}

RateMeter::Duration RateMeter::Left() const noexcept {
  return IsRunning() ? window_ - waited_ : Duration::max();
}

void RateMeter::Check() {
  if (!IsRunning() || waited_ < window_) return;
  const std::int64_t length = std::chrono::duration_cast<milliseconds>(window_).count();
  if (bytes_ < static_cast<double>(bytesPerSecond_) * static_cast<double>(length) / 1000)
    ThrowCurl(CURLE_OPERATION_TIMEDOUT, "Operation too slow. Less than " + std::to_string(bytesPerSecond_) +
                                            " bytes/sec transferred the last " + std::to_string(length) +
                                            " milliseconds");
  StartWindow();
}

}  // namespace qv
