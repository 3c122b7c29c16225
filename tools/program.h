// The program without its main function.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/input/parsed_options.h"

namespace qv::cli {

// Runs a command that calls, and returns the exit status.
using CallingCommands = int (*)(const ParsedArguments& parsed, std::ostream& out, std::ostream& err);

// `arguments` without the program's name. Runs what calls by `callingCommands`, everything else itself.
// Returns the exit status; never throws.
int RunProgram(const std::vector<std::string>& arguments, CallingCommands callingCommands, std::ostream& out,
               std::ostream& err) noexcept;

}  // namespace qv::cli
