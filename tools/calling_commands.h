// The commands that call a server, run a service or create the library's objects.
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

// Runs the command, reports its failure on `err`, and returns the exit status. Never throws.
int RunCallingCommand(CallingCommand command) noexcept;

}  // namespace qv::cli
