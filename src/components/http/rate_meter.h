// Checks that bytes are sent or received at a minimum mean rate. Only time spent waiting for the network
// counts, so a slow host, listener or disk causes no failure.
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

  // Counts bytes of a part of the transfer; the first ones start its first window.
  void Count(std::size_t bytes) noexcept;
  // The part is over, or the server may pause now.
  void Stop() noexcept { running_ = false; }
  // Adds time spent waiting; ignored outside a part.
  void Wait(Duration time) noexcept;
  // The time left in the window; the maximum value if no window is running.
  Duration Left() const noexcept;
  // At the end of a window: starts the next one, or throws HttpFailure (HTTP_E_TIMED_OUT) if this one had too
  // few bytes.
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
