// What may end a transfer early: the host's limits of time, its progress listener, and Abort.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "components/http/rate_meter.h"
#include "qvscriptwells/http_component.h"

namespace qv {

// Borrows all three for as long as it lives. Abort may be set on another thread; all else is the calling
// thread's.
class TransferWatch {
 public:
  using Clock = std::chrono::steady_clock;

  // `spent` of the total time is over already.
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

  // Remembers how far the transfer is and tells the listener. Throws HttpFailure (HTTP_E_CANCELLED, and
  // HTTP_E_TIMED_OUT when the total time is over).
  void Report(bool sending, std::int64_t done, std::int64_t total);
  // Tells the listener the same again; for pauses. Throws as above.
  void Tick();
  // Milliseconds until one of the limits is reached, at most `most`, for a wait that has had no byte since
  // `idleSince`. Throws HttpFailure (HTTP_E_TIMED_OUT) for one that is reached.
  std::int64_t NextWait(Clock::time_point idleSince, std::int64_t most);
  // How many milliseconds are left for connecting, which has `begun` then; the greatest number there is for
  // no limit. Throws HttpFailure (HTTP_E_TIMED_OUT) for none.
  std::int64_t ConnectTime(Clock::time_point begun) const;
  // Tells the listener; false for the end of the transfer. For libcurl's callbacks.
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
