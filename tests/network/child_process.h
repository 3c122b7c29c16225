// A program that a test starts: killed with its object, and with the test process should that end first.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qv::test {

using Words = std::vector<std::string>;

class ChildProcess {
 public:
  // The program is looked up in PATH and in the directories of system programs. What it says on both outputs
  // goes to the file `output`. Throws std::runtime_error that names the program when it is not installed.
  ChildProcess(const Words& words, const std::string& output);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // False once it has ended by itself.
  bool IsRunning();
  // Waits for the end; the exit code, -1 for another end, -2 when it was killed after `seconds`.
  int Finish(int seconds);

 private:
  pid_t pid_ = -1;
  int status_ = 0;
};

// Asks `condition` every few milliseconds; false when it was not met in `seconds`.
bool WaitUntil(const std::function<bool()>& condition, int seconds);
bool PortAnswers(const std::string& address, std::uint16_t port);
// A TCP port of 127.0.0.1 that nobody listens on at the moment.
std::uint16_t FreePort();

// A server program. Ports that were free a moment ago may be taken, so the start is tried on several.
// `command` returns the command line for a port. Throws std::runtime_error with the program's output.
class ServerProcess {
 public:
  using Command = std::function<Words(std::uint16_t port)>;
  explicit ServerProcess(const Command& command, const std::string& output,
                         const std::string& address = "127.0.0.1", std::uint16_t fixedPort = 0);
  std::uint16_t Port() const { return port_; }

 private:
  bool TryStart(const Command& command, const std::string& output, const std::string& address);

  std::uint16_t port_ = 0;
  std::unique_ptr<ChildProcess> process_;
};

}  // namespace qv::test
