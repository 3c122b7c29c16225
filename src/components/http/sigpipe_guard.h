// Suppresses SIGPIPE on this thread while libcurl writes through TLS, without changing the host's signal
// handlers.
#pragma once

#include <csignal>

namespace qv {

class SigpipeGuard {
 public:
  // Does nothing when not `needed`.
  explicit SigpipeGuard(bool needed) noexcept;
  ~SigpipeGuard();
  SigpipeGuard(const SigpipeGuard&) = delete;
  SigpipeGuard& operator=(const SigpipeGuard&) = delete;

 private:
  bool active_;
  sigset_t before_{};
};

}  // namespace qv
