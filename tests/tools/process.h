// The built program as its users run it: a process with its output, its messages and its exit code.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

#include "fixtures/temporary_directory.h"
#include "tests/tools/words.h"

namespace qv::cli::testing {

using Variables = std::map<std::string, std::string>;

// A registry file without a home directory, which hides that of the machine.
inline constexpr char kNoHome[] = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"\"\n";

// The result of a run. The checks take a message as the program prints it after "scriptwells: ", or as a
// line of JSON; an empty one is none at all.
struct Outcome {
  int exit = -1;  // 128 + the number after an end by signal
  std::string out;
  std::string err;
  bool echo = false;    // of OnTerminal: whether the terminal shows what is typed, at the end
  std::string command;  // for the messages of checks that fail

  void Succeeds(const std::string& text, const std::string& message = "") const;
  // With nothing on standard output.
  void Fails(int status, const std::string& message) const;
  // The same, if the message has this start.
  void FailsLike(int status, const std::string& start) const;
};

// A run of the program that is to come. Its environment is that of this process, without any SCRIPTWELLS_
// variable and without profiles, with a registry that has no home directory, and with TERM=xterm; Set
// overrides that.
class Tool {
 public:
  // The line is split as a shell does it; `more` are further arguments.
  explicit Tool(const std::string& line, const Words& more = {}) : words_(Line(line, more)) {}

  Tool& Add(const Words& more);
  Tool& Set(const std::string& name, const std::string& value);
  // A file that standard output is written to.
  Tool& WriteTo(const std::string& file);
  // Standard streams that are closed at the start.
  Tool& Close(const std::vector<int>& streams);

  Outcome Run(const std::string& input = "") const;
  // Run and check.
  void Succeeds(const std::string& text, const std::string& message = "") const {
    Run().Succeeds(text, message);
  }
  void Fails(int status, const std::string& message) const { Run().Fails(status, message); }
  void FailsLike(int status, const std::string& start) const { Run().FailsLike(status, start); }
  // On a terminal of this width (0: unknown): types `typed` after the program has shown `question`. `out` is
  // all that the terminal received.
  Outcome OnTerminal(const std::string& question = "", const std::string& typed = "",
                     unsigned short width = 0) const;

 private:
  friend class Process;

  Words words_;
  Variables variables_;
  std::string output_;
  std::vector<int> closed_;
};

inline Outcome RunTool(const std::string& line, const Words& more = {}) {
  return Tool(line, more).Run();
}

// The program while it runs. It is killed after 120 seconds, and with this object.
class Process {
 public:
  explicit Process(const Tool& tool);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void Signal(int signal) const;
  // The next line of standard output, without its line end.
  std::string ReadLine() const;
  std::string ReadErrorLine() const;
  // Nobody reads its standard output from now on.
  void CloseOutput();
  // Writes the input, closes standard input, and collects the rest of the output until the program ends.
  Outcome Finish(const std::string& input = "");

 private:
  std::string command_;
  TemporaryDirectory registry_;
  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
  int err_ = -1;
};

// A running `scriptwells serve`, with its own temporary directory.
class ServeProcess {
 public:
  explicit ServeProcess(const std::string& options = "", const Words& more = {});

  const std::string& Url() const { return url_; }
  Process& Itself() { return process_; }
  // One of the service's own counts; -1 if it has none of this name.
  int Count(const std::string& name) const;
  // Waits until the count has this value; false after ten seconds.
  bool Reaches(const std::string& name, int count) const;
  // A client of the service.
  Tool Joe(const std::string& line, const Words& more = {}) const {
    return Tool(line, more).Add({"--user", "joe", "--server", url_});
  }

 private:
  TemporaryDirectory temp_;  // outlives the process, which may be killed
  Process process_;
  std::string url_;
};

}  // namespace qv::cli::testing
