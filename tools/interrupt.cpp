#include "tools/interrupt.h"

#include <semaphore.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

#include "tools/failure.h"

namespace qv::cli {

namespace {

constexpr unsigned kSecondsToLeave = 5;

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");
std::atomic<bool> g_interrupted{false};
sem_t g_signal;

// Everything here is allowed in a signal handler.
extern "C" void OnInterrupt(int) {
  const int error = errno;
  if (g_interrupted.exchange(true)) _exit(static_cast<int>(ExitStatus::kInterrupted));
  alarm(kSecondsToLeave);
  sem_post(&g_signal);
  errno = error;
}

extern "C" void OnAlarm(int) {
  _exit(static_cast<int>(ExitStatus::kInterrupted));
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;  // without SA_RESTART: a blocking read has to return
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

void WatchForInterrupt() {
  sem_init(&g_signal, 0, 0);
  Handle(SIGINT, OnInterrupt);
  Handle(SIGTERM, OnInterrupt);
  Handle(SIGALRM, OnAlarm);
  Handle(SIGPIPE, SIG_IGN);
}

bool Interrupted() noexcept {
  return g_interrupted;
}

void ThrowIfInterrupted() {
  if (Interrupted()) throw Failure(ExitStatus::kInterrupted, "interrupted");
}

void WaitForInterrupt() {
  while (sem_wait(&g_signal) != 0 && errno == EINTR) {
  }
}

}  // namespace qv::cli
