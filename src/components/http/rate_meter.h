// Whether bytes go or come at a minimum mean rate. Only the time spent waiting for the network counts, so a
// host that pauses between two reads, a slow listener and a slow disk do no harm.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

#include "qvscriptwells/http_component.h"

namespace qv {

class RateMeter {
 public:
  using Duration = std::chrono::steady_clock::duration;

  explicit RateMeter(const HttpOptions& options) noexcept;

  // Bytes of a part of the transfer; the first ones start its first window.
  void Count(std::size_t bytes) noexcept;
  // The part is over, or a pause that is the server's right begins.
  void Stop() noexcept { running_ = false; }
  // Time that was spent waiting; ignored while no part is under way.
  void Wait(Duration time) noexcept;
  // What is left of the window; the longest time there is when no window is running.
  Duration Left() const noexcept;
  // At the end of a window: starts the next one, or throws HttpFailure (HTTP_E_TIMED_OUT) when it had too few
  // bytes.
  void Check();

 private:
  void StartWindow() noexcept;
  bool IsRunning() const noexcept { return running_ && bytesPerSecond_ > 0 && window_ > Duration::zero(); }

  std::int64_t bytesPerSecond_;
  Duration window_;
  bool running_ = false;
  double bytes_ = 0;
  Duration waited_{};
};

}  // namespace qv
