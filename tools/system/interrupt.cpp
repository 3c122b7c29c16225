#include "tools/system/interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>

#include "tools/report/failure.h"

namespace qv::cli {

namespace {

constexpr unsigned kSecondsToLeave = 5;

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");
using CleanUp = void (*)();
static_assert(std::atomic<CleanUp>::is_always_lock_free, "a signal handler may not wait");
std::atomic<CleanUp> g_cleanUp{nullptr};
std::atomic<bool> g_stays{false};    // after SIGINT
std::atomic<bool> g_leaving{false};  // a signal ends the program

// The handler writes a byte that nobody reads, so that a poll returns also when the signal came just before
// it.
int g_pipe[2] = {-1, -1};

// Everything here is allowed in a signal handler.
[[noreturn]] void LeaveAtOnce() {
  if (const CleanUp cleanUp = g_cleanUp) cleanUp();
  _exit(static_cast<int>(ExitStatus::kInterrupted));
}

void BeginToLeave() {
  if (g_leaving) LeaveAtOnce();
  g_leaving = true;
  alarm(kSecondsToLeave);
}

extern "C" void OnInterrupt(int signal) {
  const int error = errno;
  if (signal != SIGINT || !g_stays) BeginToLeave();
  InterruptToken().Cancel();
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = write(g_pipe[1], &byte, 1);
  errno = error;
}

extern "C" void OnAlarm(int) {
  LeaveAtOnce();
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;  // without SA_RESTART: a blocking read has to return
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

// Waits for the descriptor or a signal; poll passes over a negative descriptor.
void WaitForEither(int descriptor) {
  pollfd waits[] = {{descriptor, POLLIN, 0}, {g_pipe[0], POLLIN, 0}};
  while (poll(waits, 2, -1) < 0 && errno == EINTR && !Interrupted()) {
  }
}

}  // namespace

void WatchForInterrupt() {
  InterruptToken();  // a signal handler must not make it
  if (pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
    throw Failure(ExitStatus::kLocal, std::string("cannot make a pipe: ") + std::strerror(errno));
  Handle(SIGINT, OnInterrupt);
  Handle(SIGTERM, OnInterrupt);
  Handle(SIGALRM, OnAlarm);
  Handle(SIGPIPE, SIG_IGN);
}

bool Interrupted() noexcept {
  return InterruptToken().IsCancelled();
}

// Never destroyed, since a signal may come while the program ends.
scriptwells::CancelToken& InterruptToken() {
  static auto* const token = new scriptwells::CancelToken;
  return *token;
}

void OnForcedExit(void (*cleanUp)()) noexcept {
  g_cleanUp = cleanUp;
}

void StayAfterInterrupts() {
  g_stays = true;
  Handle(SIGHUP, OnInterrupt);
}

bool ForgetInterrupt() noexcept {
  char dropped[64];
  while (read(g_pipe[0], dropped, sizeof dropped) > 0) {
  }
  InterruptToken().Reset();
  if (g_leaving) InterruptToken().Cancel();  // also one that came just before the reset
  return !g_leaving;
}

void ThrowIfInterrupted() {
  if (Interrupted()) throw Failure(ExitStatus::kInterrupted, "interrupted");
}

void WaitReadable(int descriptor) {
  WaitForEither(descriptor);
  ThrowIfInterrupted();
}

Waited WaitFor(int descriptor, int milliseconds) noexcept {
  pollfd waits[] = {{descriptor, POLLIN, 0}, {g_pipe[0], POLLIN, 0}};
  const int ready = poll(waits, 2, milliseconds);
  if (ready < 0 || waits[1].revents != 0) return Waited::kSignal;
  return ready == 0 ? Waited::kTimeOver : Waited::kReadable;
}

void WaitForInterrupt() {
  WaitForEither(-1);
}

void WaitForInterruptOrEof(int descriptor) {
  char dropped[4096];
  ssize_t count = 1;
  while (!Interrupted() && (count > 0 || errno == EINTR || errno == EAGAIN)) {
    WaitForEither(descriptor);
    if (Interrupted()) return;
    errno = 0;
    count = read(descriptor, dropped, sizeof dropped);
  }
}

}  // namespace qv::cli
