#include "tests/tools/process.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>

namespace qv::cli::testing {

namespace {

using Clock = std::chrono::steady_clock;

// Only ends what hangs: a sanitized program on a busy machine may take long for little.
constexpr std::chrono::seconds kPatience{120};

struct Pipe {
  Pipe() {
    if (::pipe2(ends, O_CLOEXEC) != 0) std::abort();
  }
  int ends[2];
};

std::vector<std::string> EnvironmentWith(Variables variables, const TemporaryDirectory& registry) {
  variables.insert({{"QV_REGISTRY", registry.Path("no_home.reg")},
                    {"XDG_CONFIG_HOME", registry.Path("config")},
                    {"TERM", "xterm"}});
  std::vector<std::string> lines;
  for (char** line = environ; *line != nullptr; ++line) {
    const std::string name(*line, std::strcspn(*line, "="));
    if (!StartsWith(name, "SCRIPTWELLS_") && variables.count(name) == 0) lines.emplace_back(*line);
  }
  for (const auto& [name, value] : variables) lines.push_back(std::string(name).append("=").append(value));
  return lines;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// What the program is started with. It is made before fork(): this process has threads (a server's, say), and
// one of them may hold a lock of the allocator at that moment, which nobody would release in the child.
class Start {
 public:
  Start(Words words, const Variables& variables, const TemporaryDirectory& registry)
      : words_(std::move(words)), lines_(EnvironmentWith(variables, registry)) {
    registry.Write("no_home.reg", kNoHome);
    words_.insert(words_.begin(), SCRIPTWELLS_PROGRAM);
    arguments_ = Pointers(words_);
    environment_ = Pointers(lines_);
  }
  Start(const Start&) = delete;
  Start& operator=(const Start&) = delete;

  // In the child. Calls nothing that may wait for a lock.
  [[noreturn]] void Become() const {
    ::execve(SCRIPTWELLS_PROGRAM, arguments_.data(), environment_.data());
    ::_exit(126);
  }

 private:
  Words words_;
  std::vector<std::string> lines_;
  std::vector<char*> arguments_;
  std::vector<char*> environment_;
};

int LeftOf(Clock::time_point end) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
  return left < 0 ? 0 : static_cast<int>(left);
}

// Appends what is there; false at the end of the stream.
bool Drain(int descriptor, std::string& text) {
  char bytes[4096];
  const ssize_t count = ::read(descriptor, bytes, sizeof bytes);
  if (count > 0) text.append(bytes, static_cast<std::size_t>(count));
  return count > 0;
}

int ExitOf(pid_t pid) {
  int status = 0;
  if (::waitpid(pid, &status, 0) != pid) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string LineFrom(int descriptor) {
  std::string line;
  const auto end = Clock::now() + kPatience;
  for (;;) {
    pollfd wait{descriptor, POLLIN, 0};
    char byte = 0;
    if (::poll(&wait, 1, LeftOf(end)) <= 0 || ::read(descriptor, &byte, 1) != 1 || byte == '\n') return line;
    line += byte;
  }
}

void Close(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

std::string Joined(const Words& words) {
  std::string command;
  for (const std::string& word : words) command += " " + word;
  return command;
}

std::string Printed(const std::string& message) {
  if (message.empty()) return "";
  return (message[0] == '{' ? "" : "scriptwells: ") + message + "\n";
}

// The page at `path`, with its head.
std::string Fetch(const std::string& url, const std::string& path) {
  const std::string port = url.substr(url.rfind(':') + 1);
  int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(port)));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  std::string page;
  const std::string request = "GET " + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n";
  if (::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
      ::write(connection, request.data(), request.size()) > 0)
    while (Drain(connection, page)) {
    }
  Close(connection);
  return page;
}

}  // namespace

void Outcome::Succeeds(const std::string& text, const std::string& message) const {
  EXPECT_EQ(out, text) << command;
  EXPECT_EQ(err, Printed(message)) << command;
  EXPECT_EQ(exit, 0) << command;
}

void Outcome::Fails(int status, const std::string& message) const {
  EXPECT_EQ(out, "") << command;
  EXPECT_EQ(err, Printed(message)) << command;
  EXPECT_EQ(exit, status) << command;
}

void Outcome::FailsLike(int status, const std::string& start) const {
  EXPECT_EQ(out, "") << command;
  const std::string line = start[0] == '{' ? start : "scriptwells: " + start;
  EXPECT_EQ(err.substr(0, line.size()), line) << command << "\n" << err;
  EXPECT_EQ(exit, status) << command;
}

Tool& Tool::Add(const Words& more) {
  words_.insert(words_.end(), more.begin(), more.end());
  return *this;
}

Tool& Tool::Set(const std::string& name, const std::string& value) {
  variables_[name] = value;
  return *this;
}

Tool& Tool::WriteTo(const std::string& file) {
  output_ = file;
  return *this;
}

Tool& Tool::Close(const std::vector<int>& streams) {
  closed_ = streams;
  return *this;
}

Outcome Tool::Run(const std::string& input) const {
  return Process(*this).Finish(input);
}

Outcome Tool::OnTerminal(const std::string& question, const std::string& typed, unsigned short width) const {
  int terminal = -1;
  const winsize size = {24, width, 0, 0};
  const TemporaryDirectory registry;
  const Start start(words_, variables_, registry);
  const pid_t pid = ::forkpty(&terminal, nullptr, nullptr, &size);
  if (pid == 0) start.Become();
  Outcome outcome;
  outcome.command = Joined(words_);
  bool asked = false;
  const auto end = Clock::now() + kPatience;
  for (;;) {
    pollfd wait{terminal, POLLIN, 0};
    if (::poll(&wait, 1, LeftOf(end)) <= 0 || !Drain(terminal, outcome.out)) break;
    if (asked || !Holds(outcome.out, question)) continue;
    asked = ::write(terminal, typed.data(), typed.size()) == static_cast<ssize_t>(typed.size());
  }
  if (LeftOf(end) == 0) ::kill(pid, SIGKILL);
  termios state = {};
  outcome.echo = ::tcgetattr(terminal, &state) == 0 && (state.c_lflag & ECHO) != 0;
  ::close(terminal);
  outcome.exit = ExitOf(pid);
  return outcome;
}

Process::Process(const Tool& tool) : command_(Joined(tool.words_)) {
  static_cast<void>(::signal(SIGPIPE, SIG_IGN));
  const Start start(tool.words_, tool.variables_, registry_);
  Pipe in;
  Pipe out;
  Pipe err;
  pid_ = ::fork();
  if (pid_ == 0) {
    ::dup2(in.ends[0], 0);
    ::dup2(out.ends[1], 1);
    ::dup2(err.ends[1], 2);
    if (!tool.output_.empty()) ::dup2(::open(tool.output_.c_str(), O_WRONLY | O_CLOEXEC), 1);
    static_cast<void>(::signal(SIGPIPE, SIG_DFL));
    for (const int stream : tool.closed_) ::close(stream);
    start.Become();
  }
  ::close(in.ends[0]);
  ::close(out.ends[1]);
  ::close(err.ends[1]);
  in_ = in.ends[1];
  out_ = out.ends[0];
  err_ = err.ends[0];
}

Process::~Process() {
  if (pid_ > 0) {
    ::kill(pid_, SIGKILL);
    ExitOf(pid_);
  }
  for (int* descriptor : {&in_, &out_, &err_}) Close(*descriptor);
}

void Process::Signal(int signal) const {
  if (pid_ > 0) ::kill(pid_, signal);
}

void Process::CloseOutput() {
  Close(out_);
}

std::string Process::ReadLine() const {
  return LineFrom(out_);
}

std::string Process::ReadErrorLine() const {
  return LineFrom(err_);
}

Outcome Process::Finish(const std::string& input) {
  Outcome outcome;
  outcome.command = command_;
  if (::write(in_, input.data(), input.size()) < 0) outcome.err = "(the program takes no input)\n";
  Close(in_);
  const auto end = Clock::now() + kPatience;
  while (out_ >= 0 || err_ >= 0) {
    pollfd waits[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
    if (::poll(waits, 2, LeftOf(end)) <= 0) break;
    if (waits[0].revents != 0 && !Drain(out_, outcome.out)) Close(out_);
    if (waits[1].revents != 0 && !Drain(err_, outcome.err)) Close(err_);
  }
  if (out_ >= 0 || err_ >= 0) ::kill(pid_, SIGKILL);
  outcome.exit = ExitOf(pid_);
  pid_ = -1;
  return outcome;
}

ServeProcess::ServeProcess(const std::string& options, const Words& more)
    : process_(Tool("serve " + options, more).Set("TMPDIR", temp_.Path())), url_(process_.ReadLine()) {}

int ServeProcess::Count(const std::string& name) const {
  const std::string page = Fetch(url_, "/stats");
  const std::size_t found = page.find("\"" + name + "\":");
  return found == std::string::npos ? -1 : std::stoi(page.substr(found + name.size() + 3));
}

bool ServeProcess::Reaches(const std::string& name, int count) const {
  for (int i = 0; i < 400 && Count(name) != count; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  return Count(name) == count;
}

}  // namespace qv::cli::testing
