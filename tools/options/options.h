// The parser of the command line. It opens and runs nothing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/input/parsed_options.h"

namespace CLI {
class App;
}  // namespace CLI

namespace qv::cli {

// `arguments` without the program's name. Reads the SCRIPTWELLS_ variables of the environment. Throws only if
// memory is exhausted.
ParsedArguments ParseArguments(const std::vector<std::string>& arguments);

// Shows all commands and options, as they are before parsing.
void ShowOptions(const std::function<void(CLI::App& program)>& show);

}  // namespace qv::cli
