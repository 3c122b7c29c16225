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

// Whether the command runs a service of this program.
inline bool RunsService(const ParsedArguments& parsed) {
  return parsed.command == Command::kServe || (parsed.command == Command::kRun && parsed.run.local);
}

// Both run the command, report its failure on `err`, and return the exit status. Neither throws.

// For commands that run no service.
int RunCallingCommand(CallingCommand command) noexcept;

// For commands that do.
int RunServiceCommand(CallingCommand command) noexcept;

}  // namespace qv::cli
