#include "tools/input/password_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "tools/input/input_text.h"
#include "tools/report/failure.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

constexpr int kNoSuchCommand = 127;
constexpr std::size_t kLongestOutput = 65536;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, "the password command " + reason);
}

struct Pipe {
  Pipe() {
    if (::pipe2(ends, O_CLOEXEC) != 0) Refuse(std::string("cannot be started: ") + std::strerror(errno));
  }
  ~Pipe() {
    ::close(ends[0]);
    CloseWriter();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  void CloseWriter() {
    if (ends[1] >= 0) ::close(ends[1]);
    ends[1] = -1;
  }
  int ends[2] = {-1, -1};
};

// What the command is started with: its output in the pipe, no input, and the usual reactions to signals,
// which this program has changed for itself.
class SpawnSettings {
 public:
  explicit SpawnSettings(int output) {
    sigset_t usual;
    sigemptyset(&usual);
    for (const int signal : {SIGPIPE, SIGINT, SIGTERM, SIGALRM}) sigaddset(&usual, signal);
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setsigdefault(&attributes_, &usual);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  pid_t Start(const std::string& command) const {
    std::string shell = "sh";
    std::string option = "-c";
    std::string copy = command;
    char* const arguments[] = {shell.data(), option.data(), copy.data(), nullptr};
    pid_t child = -1;
    const int error = ::posix_spawn(&child, "/bin/sh", &actions_, &attributes_, arguments, environ);
    if (error != 0) Refuse(std::string("cannot be started: ") + std::strerror(error));
    return child;
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

// The running command. The destructor stops it unless it has ended.
class Child {
 public:
  explicit Child(pid_t id) : id_(id) {}
  ~Child() {
    if (id_ < 0) return;
    ::kill(id_, SIGTERM);
    Wait();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  int Wait() {
    int status = 0;
    while (::waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = -1;
    return status;
  }

 private:
  pid_t id_;
};

// The command may print more than the line, and would not end well if nobody read it.
void ReadRest(int descriptor) {
  char bytes[4096];
  for (std::size_t total = 0; total <= kLongestOutput;) {
    WaitReadable(descriptor);
    const ssize_t count = ::read(descriptor, bytes, sizeof bytes);
    if (count < 0 && errno == EINTR) continue;
    ::explicit_bzero(bytes, sizeof bytes);
    if (count <= 0) return;
    total += static_cast<std::size_t>(count);
  }
  Refuse("printed more than 64 kB");
}

void CheckStatus(int status) {
  if (WIFSIGNALED(status)) Refuse("was ended by signal " + std::to_string(WTERMSIG(status)));
  const int code = WEXITSTATUS(status);
  if (code == kNoSuchCommand) Refuse("failed with exit status 127: there is no such command");
  if (code != 0) Refuse("failed with exit status " + std::to_string(code));
}

}  // namespace

std::string PasswordOfCommand(const std::string& command) {
  Pipe pipe;
  Child child(SpawnSettings(pipe.ends[1]).Start(command));
  pipe.CloseWriter();
  std::string password = ReadLine(pipe.ends[0], "password");
  ReadRest(pipe.ends[0]);
  CheckStatus(child.Wait());
  if (password.empty()) Refuse("printed no password");
  return password;
}

}  // namespace qv::cli
