#include "devservice/workers/worker_process.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>

#include "devservice/workers/script_messages.h"

namespace qv::devservice {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kGreetingTime{10000};
// An answer is a script's text in JSON; a control character takes six bytes there.
constexpr std::size_t kLongestMessage = std::size_t{1} << 30;
// How often a running script's memory is checked. A process can touch some megabytes in this time.
constexpr int kWatchMilliseconds = 4;

int RemainingWait(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, kWatchMilliseconds));
}

}  // namespace

WorkerProcess::WorkerProcess(StartedWorker started)
    : started_(std::move(started)), buffer_(kLongestMessage) {}

std::unique_ptr<WorkerProcess> WorkerProcess::AwaitGreeting(StartedWorker started,
                                                            const std::atomic<bool>& stop) {
  std::unique_ptr<WorkerProcess> worker(new WorkerProcess(std::move(started)));
  nlohmann::json greeting;
  const ExchangeLimits limits{kGreetingTime, kLongestMessage, &stop, {}};
  if (worker->Exchange("", limits, greeting) != ExchangeEnd::kAnswered) {
    throw std::runtime_error("The script worker \"" + worker->started_.Program() + "\" does not work.");
  }
  worker->freshBytes_ = worker->ResidentBytes();
  return worker;
}

ExchangeEnd WorkerProcess::Exchange(const std::string& packed, const ExchangeLimits& limits,
                                    nlohmann::json& answer) {
  const Clock::time_point deadline = Clock::now() + limits.time;
  std::size_t sent = 0;
  for (;;) {
    const bool sending = sent < packed.size();
    pollfd watched{started_.Socket(), static_cast<short>(sending ? POLLIN | POLLOUT : POLLIN), 0};
    poll(&watched, 1, RemainingWait(deadline));
    const bool open = (!sending || SendPart(packed, sent)) && ReceivePart();
    if (TakeAnswer(limits.console, answer)) return ExchangeEnd::kAnswered;
    if (!open) return ExchangeEnd::kCrashed;
    if (limits.stop->load()) return ExchangeEnd::kStopped;
    if (GrownBytes() > limits.memory) return ExchangeEnd::kMemoryLimit;
    if (Clock::now() >= deadline) return ExchangeEnd::kTimeLimit;
  }
}

bool WorkerProcess::TakeAnswer(const ConsoleSink& console, nlohmann::json& answer) {
  while (buffer_.Take(answer)) {
    if (!IsConsoleMessage(answer)) return true;
    if (console) console(ConsoleFromJson(answer));
  }
  return false;
}

bool WorkerProcess::SendPart(const std::string& packed, std::size_t& sent) const {
  const ssize_t count =
      send(started_.Socket(), packed.data() + sent, packed.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  sent += static_cast<std::size_t>(count);
  return true;
}

bool WorkerProcess::ReceivePart() {
  std::array<char, 65536> bytes;
  const ssize_t count = recv(started_.Socket(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  buffer_.Append(bytes.data(), static_cast<std::size_t>(count));
  return count > 0;
}

std::size_t WorkerProcess::GrownBytes() const {
  const std::size_t now = ResidentBytes();
  return now > freshBytes_ ? now - freshBytes_ : 0;
}

std::size_t WorkerProcess::ResidentBytes() const {
  std::ifstream file("/proc/" + std::to_string(started_.Process()) + "/statm");
  std::size_t total = 0;
  std::size_t resident = 0;
  file >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace qv::devservice
