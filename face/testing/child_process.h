// A program as a child of this process.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "face/testing/descriptor.h"

namespace scriptwells::testing {

// Runs until the end of the object, or of this process: then its standard input ends, on which it has to end,
// too. One thread at a time.
class ChildProcess {
 public:
  // Starts command[0], which is looked up in PATH if it has no "/", with pipes for its standard streams, and
  // the content of `file` to read at kFile. It gets no other descriptor of this process, no blocked signal,
  // and its own process group, so that Ctrl-C does not reach it. Throws std::system_error.
  static constexpr char kFile[] = "/dev/fd/3";
  ChildProcess(const std::vector<std::string>& command, const std::string& file);
  // As End.
  ~ChildProcess() { End(); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // What it writes on standard output and standard error.
  Descriptor& Output() noexcept { return output_; }
  Descriptor& Errors() noexcept { return errors_; }

  // Ends the program if it still runs, by force after the time, and leaves no zombie. Returns how it ended
  // ("exit code 6", "signal 9"); empty if another part of this process has collected it.
  std::string End(std::chrono::milliseconds time = std::chrono::seconds(10)) noexcept;

 private:
  pid_t process_ = -1;
  Descriptor input_;
  Descriptor output_;
  Descriptor errors_;
};

}  // namespace scriptwells::testing
