#include "face/testing/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>
#include <thread>

namespace scriptwells::testing {
namespace {

constexpr int kFileNumber = 3;
constexpr std::chrono::milliseconds kLook{2};  // between two looks whether it has ended

[[noreturn]] void ThrowSystem(int error) {
  throw std::system_error(error, std::generic_category());
}

// Above those that the child gets, so that none is overwritten before it is used: in a process without
// standard streams, a new descriptor takes their numbers.
Descriptor MovedUp(Descriptor low) {
  Descriptor high(fcntl(low.Number(), F_DUPFD_CLOEXEC, kFileNumber + 1));
  if (!high.IsOpen()) ThrowSystem(errno);
  return high;
}

struct Pipe {
  Pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) ThrowSystem(errno);
    read = Descriptor(ends[0]);
    write = Descriptor(ends[1]);
    read = MovedUp(std::move(read));
    write = MovedUp(std::move(write));
  }
  Descriptor read;
  Descriptor write;
};

// In memory: the content may be secret.
Descriptor FileOf(const std::string& content) {
  Descriptor file = MovedUp(Descriptor(memfd_create("scriptwells", MFD_CLOEXEC)));
  for (std::size_t written = 0; written < content.size();) {
    const ssize_t count = write(file.Number(), content.data() + written, content.size() - written);
    if (count < 0 && errno != EINTR) ThrowSystem(errno);
    if (count > 0) written += static_cast<std::size_t>(count);
  }
  return file;
}

class SpawnSettings {
 public:
  SpawnSettings(const Descriptor& in, const Descriptor& out, const Descriptor& err, const Descriptor& file) {
    posix_spawn_file_actions_init(&actions_);
    int number = 0;
    for (const Descriptor* descriptor : {&in, &out, &err, &file})
      posix_spawn_file_actions_adddup2(&actions_, descriptor->Number(), number++);
    posix_spawn_file_actions_addclosefrom_np(&actions_, number);
    posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    // What a process ignores, its children ignore, too.
    for (const int signal : {SIGINT, SIGTERM, SIGPIPE, SIGCHLD}) sigaddset(&signals, signal);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  pid_t Spawn(const std::vector<std::string>& command) const {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    pid_t process = -1;
    const int error =
        posix_spawnp(&process, arguments[0], &actions_, &attributes_, arguments.data(), environ);
    if (error != 0) ThrowSystem(error);
    return process;
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

std::string Description(int status) {
  if (WIFSIGNALED(status)) return "signal " + std::to_string(WTERMSIG(status));
  return "exit code " + std::to_string(WEXITSTATUS(status));
}

// The result of waitpid; 0 if the process still runs after the time.
pid_t WaitFor(pid_t process, int& status, std::chrono::milliseconds time) noexcept {
  const auto end = std::chrono::steady_clock::now() + time;
  for (;;) {
    const pid_t ended = waitpid(process, &status, WNOHANG);
    if (ended != 0 || std::chrono::steady_clock::now() >= end) return ended;
    std::this_thread::sleep_for(kLook);
  }
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& file) {
  Pipe in;
  Pipe out;
  Pipe err;
  process_ = SpawnSettings(in.read, out.write, err.write, FileOf(file)).Spawn(command);
  input_ = std::move(in.write);
  output_ = std::move(out.read);
  errors_ = std::move(err.read);
}

std::string ChildProcess::End(std::chrono::milliseconds time) noexcept {
  if (process_ <= 0) return "";
  const pid_t process = std::exchange(process_, -1);
  input_.Close();
  int status = 0;
  pid_t ended = waitpid(process, &status, WNOHANG);
  if (ended == 0) {
    kill(process, SIGTERM);
    ended = WaitFor(process, status, time);
  }
  if (ended == 0) {
    kill(process, SIGKILL);
    while ((ended = waitpid(process, &status, 0)) < 0 && errno == EINTR) {
    }
  }
  return ended == process ? Description(status) : "";
}

}  // namespace scriptwells::testing
