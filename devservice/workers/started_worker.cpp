#include "devservice/workers/started_worker.h"

#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace qv::devservice {
namespace {

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

}  // namespace

StartedWorker::StartedWorker(const std::vector<std::string>& command) {
  if (command.empty()) throw std::runtime_error("No command for the script worker is set.");
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
    ThrowSystem("No socket for a worker", errno);
  try {
    program_ = command[0];
    process_ = Spawn(command, ends[1]);
  } catch (...) {
    close(ends[0]);
    close(ends[1]);
    throw;
  }
  close(ends[1]);
  socket_ = ends[0];
}

StartedWorker::~StartedWorker() {
  if (process_ <= 0) return;
  close(socket_);
  if (reaped_) return;
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

StartedWorker::StartedWorker(StartedWorker&& other) noexcept {
  *this = std::move(other);
}

// The other one ends what this one had.
StartedWorker& StartedWorker::operator=(StartedWorker&& other) noexcept {
  std::swap(program_, other.program_);
  std::swap(process_, other.process_);
  std::swap(socket_, other.socket_);
  std::swap(reaped_, other.reaped_);
  return *this;
}

bool StartedWorker::IsAlive() {
  if (!reaped_) reaped_ = waitpid(process_, nullptr, WNOHANG) == process_;
  return !reaped_;
}

}  // namespace qv::devservice
