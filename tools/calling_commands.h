// The commands that call a server or run a service.
#pragma once

#include <iosfwd>

#include "devservice/workers/started_worker.h"
#include "tools/input/parsed_options.h"

namespace qv::cli {

// What the program hands over.
struct CallingCommand {
  const ParsedArguments& parsed;
  devservice::StartedWorker worker;  // for a service of this program, or none
  std::ostream& out;
  std::ostream& err;
};

// Whether the command has --local.
inline bool RunsScriptsItself(const ParsedArguments& parsed) {
  return (parsed.command == Command::kRun && parsed.run.local) ||
         (parsed.command == Command::kShell && parsed.shell.local);
}

// Whether the command runs a service of this program.
inline bool RunsService(const ParsedArguments& parsed) {
  return parsed.command == Command::kServe || RunsScriptsItself(parsed);
}

// Whether the command looks into servers and messages.
inline bool Inspects(const ParsedArguments& parsed) {
  return parsed.command == Command::kCheck || parsed.command == Command::kExplain;
}

// All run the command, report its failure on `err`, and return the exit status. None throws.

// For commands that do neither.
int RunCallingCommand(CallingCommand command) noexcept;

// For commands that run a service.
int RunServiceCommand(CallingCommand command) noexcept;

// The same for `shell`, which needs a library for editing.
int RunShellCommand(CallingCommand command) noexcept;
int RunLocalShellCommand(CallingCommand command) noexcept;
// For commands that inspect.
int RunInspectCommand(CallingCommand command) noexcept;

}  // namespace qv::cli
