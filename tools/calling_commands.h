// The commands that call a server, run a service or create the library's objects.
#pragma once

#include <iosfwd>

#include "tools/input/parsed_options.h"

namespace qv::cli {

// Runs the command, reports its failure on `err`, and returns the exit status. Never throws.
int RunCallingCommand(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) noexcept;

}  // namespace qv::cli
