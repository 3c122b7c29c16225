// What may end a transfer early: the host's limits, its progress listener, and Abort.
#pragma once

#include <atomic>
#include <cstdint>

#include "qvscriptwells/http_component.h"

namespace qv {

// Borrows all three for as long as it lives. Abort may be set on another thread; all else is the calling
// thread's.
class TransferWatch {
 public:
  TransferWatch(const HttpOptions& options, IHttpProgress* progress,
                const std::atomic<bool>& aborted) noexcept
      : options_(options), progress_(progress), aborted_(aborted) {}

  const HttpOptions& Options() const noexcept { return options_; }
  bool HasListener() const noexcept { return progress_ != nullptr; }

  // Remembers how far the transfer is and tells the listener. Throws HttpFailure (HTTP_E_CANCELLED).
  void Report(bool sending, std::int64_t done, std::int64_t total);
  // Tells the listener the same again; for pauses. Throws as above.
  void Tick();
  // As Tick, false in place of the exception; for libcurl's callbacks.
  bool MayGoOn() noexcept;
  std::int64_t Done() const noexcept { return done_; }
  std::int64_t Total() const noexcept { return total_; }

 private:
  const HttpOptions& options_;
  IHttpProgress* progress_;
  const std::atomic<bool>& aborted_;
  bool sending_ = true;
  std::int64_t done_ = 0;
  std::int64_t total_ = -1;
};

}  // namespace qv
