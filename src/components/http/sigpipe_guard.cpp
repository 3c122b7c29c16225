#include "components/http/sigpipe_guard.h"

#include <pthread.h>

#include <cerrno>
#include <ctime>

namespace qv {
namespace {

sigset_t OnlySigpipe() noexcept {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  return set;
}

bool IsSigpipePending() noexcept {
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

}  // namespace

// One that waits already is not ours: it stays, and none is taken away at the end.
SigpipeGuard::SigpipeGuard(bool needed) noexcept : active_(needed && !IsSigpipePending()) {
  if (!active_) return;
  const sigset_t set = OnlySigpipe();
  pthread_sigmask(SIG_BLOCK, &set, &before_);
}

SigpipeGuard::~SigpipeGuard() {
  if (!active_) return;
  const int kept = errno;
  const sigset_t set = OnlySigpipe();
  const timespec none{};
  while (IsSigpipePending() && sigtimedwait(&set, nullptr, &none) == -1 && errno == EINTR) {
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  errno = kept;
}

}  // namespace qv
