#include "devservice/workers/worker_process.h"

#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
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

[[noreturn]] void ThrowSystem(const std::string& what, int error) {
  throw std::runtime_error(what + ": " + std::strerror(error));
}

// The child gets the socket as descriptor 0, no other descriptor of ours, and no blocked signals.
class SpawnSettings {
 public:
  explicit SpawnSettings(int socket) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_adddup2(&actions_, socket, STDIN_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  const posix_spawn_file_actions_t* Actions() const { return &actions_; }
  const posix_spawnattr_t* Attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

pid_t Spawn(const std::vector<std::string>& command, int socket) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  const SpawnSettings settings(socket);
  char* noVariables[] = {nullptr};  // The environment of a user holds secrets, and scripts need none of it.
  pid_t process = 0;
  const int error = posix_spawnp(&process, arguments[0], settings.Actions(), settings.Attributes(),
                                 arguments.data(), noVariables);
  if (error != 0) ThrowSystem("The script worker \"" + command[0] + "\" cannot be started", error);
  return process;
}

int RemainingWait(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, kWatchMilliseconds));
}

}  // namespace

WorkerProcess::WorkerProcess(pid_t process, int descriptor)
    : process_(process), descriptor_(descriptor), buffer_(kLongestMessage) {}

WorkerProcess::~WorkerProcess() {
  close(descriptor_);
  if (reaped_) return;
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

std::unique_ptr<WorkerProcess> WorkerProcess::Start(const std::vector<std::string>& command,
                                                    const std::atomic<bool>& stop) {
  if (command.empty()) throw std::runtime_error("No command for the script worker is set.");
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
    ThrowSystem("No socket for a worker", errno);
  std::unique_ptr<WorkerProcess> worker;
  try {
    worker.reset(new WorkerProcess(Spawn(command, ends[1]), ends[0]));
  } catch (...) {
    close(ends[0]);
    close(ends[1]);
    throw;
  }
  close(ends[1]);
  nlohmann::json greeting;
  const ExchangeLimits limits{kGreetingTime, kLongestMessage, &stop, {}};
  if (worker->Exchange("", limits, greeting) != ExchangeEnd::kAnswered) {
    throw std::runtime_error("The script worker \"" + command[0] + "\" does not work.");
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
    pollfd watched{descriptor_, static_cast<short>(sending ? POLLIN | POLLOUT : POLLIN), 0};
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
      send(descriptor_, packed.data() + sent, packed.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  sent += static_cast<std::size_t>(count);
  return true;
}

bool WorkerProcess::ReceivePart() {
  std::array<char, 65536> bytes;
  const ssize_t count = recv(descriptor_, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  buffer_.Append(bytes.data(), static_cast<std::size_t>(count));
  return count > 0;
}

bool WorkerProcess::IsAlive() {
  if (!reaped_) reaped_ = waitpid(process_, nullptr, WNOHANG) == process_;
  return !reaped_;
}

std::size_t WorkerProcess::GrownBytes() const {
  const std::size_t now = ResidentBytes();
  return now > freshBytes_ ? now - freshBytes_ : 0;
}

std::size_t WorkerProcess::ResidentBytes() const {
  std::ifstream file("/proc/" + std::to_string(process_) + "/statm");
  std::size_t total = 0;
  std::size_t resident = 0;
  file >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace qv::devservice
