// Plays a user who types the commands of a document in a shell.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "fixtures/temporary_directory.h"
#include "tests/documents/markdown.h"

namespace qv::documents {

struct Typed {
  std::string output;  // both streams, with home and ports replaced by those of the document
  int exit = -1;       // -1 for a command in the background
};

// Whether a command printed what the document shows. "..." in a line is any text. A command in the background
// may print further lines. A command without output has to succeed.
bool Agrees(const Command& command, const Typed& typed);

// All of `from` in `text` as `to`.
std::string Replaced(std::string text, const std::string& from, const std::string& to);
// Whether a command runs while the next ones are typed.
bool IsInBackground(const std::string& command);
// One word of the shell.
std::string Quoted(const std::string& text);

// Where the program's commands get their answers, and where they write them down. Paths of tapes, empty for
// none.
struct UsedTapes {
  std::string record{};
  // There is no network then. Commands in the background are not run; the home directory that
  // `scriptwells serve --home` makes for clients is there.
  std::string replay{};
};

// The tape of a document or program, such as "tools/README.md". With the variable QV_RECORD_TAPES set, the
// tapes are recorded again, and UsedTapes of RecordedTape names a new one; else it names none.
std::string TapeOf(const std::string& name);
UsedTapes RecordedTape(const std::string& name);

// Works in a home directory that contains only scriptwells/, a view of the project with the built programs in
// build/demo/. Free ports replace the ports 8080 and 8081.
class Typist {
 public:
  explicit Typist(UsedTapes tapes = {});

  // Runs all commands in one shell, and then ends the processes that it started.
  std::vector<Typed> Type(const std::vector<Command>& commands);
  // How many processes of the last shell are still running.
  int ProcessesLeft() const;
  // The names in the temporary directory, one per line.
  std::string TemporaryFilesLeft() const;

 private:
  void MakeCheckout() const;
  void MakeLentHome(const std::string& command) const;
  std::string Script(const std::vector<Command>& commands) const;
  void RunShell(const std::string& script);
  Typed Result(std::size_t index) const;
  std::string ForShell(const std::string& text) const;
  std::string ForDocument(const std::string& text) const;

  const UsedTapes tapes_;
  const TemporaryDirectory root_;
  const std::string home_ = root_.Path("joe");
  std::vector<std::string> ports_;  // they replace those of the documents
  pid_t shell_ = -1;
};

}  // namespace qv::documents
