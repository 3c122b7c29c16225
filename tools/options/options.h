// The parser of the command line. It runs nothing, and opens only the user's file of profiles.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/input/parsed_options.h"

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

// `arguments` without the program's name. Reads the SCRIPTWELLS_ variables of the environment, and for
// commands that call a server the user's file of profiles. Throws only if memory is exhausted.
ParsedArguments ParseArguments(const std::vector<std::string>& arguments);

// Shows all commands and options, as they are before parsing.
void ShowOptions(const std::function<void(CLI::App& program)>& show);

}  // namespace qv::cli
