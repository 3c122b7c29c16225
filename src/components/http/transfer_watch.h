// What may cancel a transfer: the host's timeouts, its progress listener, and Abort.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "components/http/rate_meter.h"
#include "qvscriptwells/http_component.h"

namespace qv {

// Borrows all three for its lifetime. Abort may be set on another thread; everything else is used on the
// calling thread.
class TransferWatch {
 public:
  using Clock = std::chrono::steady_clock;

  // `spent` is the part of the total time that is already used.
  TransferWatch(const HttpOptions& options, IHttpProgress* progress, const std::atomic<bool>& aborted,
                Clock::duration spent = {}) noexcept
      : options_(options),
        progress_(progress),
        aborted_(aborted),
        start_(Clock::now() - spent),
        rate_(options) {}

  const HttpOptions& Options() const noexcept { return options_; }
  bool HasListener() const noexcept { return progress_ != nullptr; }
  RateMeter& Rate() noexcept { return rate_; }

  // Stores the progress and notifies the listener. Throws HttpFailure (HTTP_E_CANCELLED, or HTTP_E_TIMED_OUT
  // when the total time is over).
  void Report(bool sending, std::int64_t done, std::int64_t total);
  // Notifies the listener of the same progress again; for pauses. Throws as above.
  void Tick();
  // Milliseconds until one of the limits is reached, at most `most`, for a wait without a byte since
  // `idleSince`. Throws HttpFailure (HTTP_E_TIMED_OUT) if a limit is reached.
  std::int64_t NextWait(Clock::time_point idleSince, std::int64_t most);
  // Milliseconds left for connecting, which started at `begun`; the maximum value means no limit. Throws
  // HttpFailure (HTTP_E_TIMED_OUT) if no time is left.
  std::int64_t ConnectTime(Clock::time_point begun) const;
  // Notifies the listener; false if it cancels the transfer. For libcurl's callbacks.
  bool MayGoOn() noexcept;
  Clock::duration Passed() const noexcept { return Clock::now() - start_; }

 private:
  void CheckTotal() const;

  const HttpOptions& options_;
  IHttpProgress* progress_;
  const std::atomic<bool>& aborted_;
  Clock::time_point start_;
  RateMeter rate_;
  bool sending_ = true;
  std::int64_t done_ = 0;
  std::int64_t total_ = -1;
};

}  // namespace qv
