// The built program as its users meet it: started as a process, with its output, its words and its exit code.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/tools/fresh_directory.h"

namespace qv::cli::testing {

using Words = std::vector<std::string>;
using Variables = std::vector<std::pair<std::string, std::string>>;
using ClosedStreams = std::vector<int>;  // descriptors

struct Outcome {
  int exit = -1;  // 128 + the number for an end by signal
  std::string out;
  std::string err;
  bool echo = false;  // of RunOnTerminal: whether the terminal shows again what is typed
};

// A running `scriptwells`. Its environment is this process's without any SCRIPTWELLS_ variable, with a
// registry that knows no home directory, and with a usual terminal; `variables` win over that. It is killed
// after 30 seconds, and with this object.
class Process {
 public:
  // `output` is a file that takes the place of the pipe behind its standard output.
  explicit Process(const Words& arguments, const Variables& variables = {}, const char* output = nullptr,
                   const ClosedStreams& closed = {});
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void Signal(int signal) const;
  // Reads standard output up to its next line end, which is left out.
  std::string ReadLine();
  // The same of standard error.
  std::string ReadErrorLine();
  // Nobody reads its standard output any more.
  void CloseOutput();
  // Gives `input` to it, closes its standard input, and takes the rest of what it says until it ends.
  Outcome Finish(const std::string& input = "");

 private:
  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
  int err_ = -1;
};

Outcome RunTool(const Words& arguments, const std::string& input = "", const Variables& variables = {});

// A running `scriptwells serve`, with a temporary directory of its own.
class ServeProcess {
 public:
  explicit ServeProcess(const Words& more = {}, const Variables& variables = {});
  const std::string& Url() const { return url_; }
  Process& Itself() { return process_; }
  // A number out of the service's own counts, -1 when it is not there.
  int Count(const std::string& name) const;

 private:
  FreshDirectory temp_;  // outlives the process, which may be killed
  Process process_;
  std::string url_;
};

// The program on a terminal: `typed` is given to it once it has shown `question`. The outcome's `out` is
// everything that the terminal is sent. `width` is that of its lines; 0: it does not tell.
Outcome RunOnTerminal(const Words& arguments, const std::string& question, const std::string& typed,
                      const Variables& variables = {}, unsigned short width = 0);

}  // namespace qv::cli::testing
