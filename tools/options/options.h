// The parser of the command line. It opens and runs nothing.
#pragma once

#include <string>
#include <vector>

#include "tools/input/parsed_options.h"

namespace qv::cli {

// `arguments` without the program's name. Reads the SCRIPTWELLS_ variables of the environment. Throws only if
// memory is exhausted.
ParsedArguments ParseArguments(const std::vector<std::string>& arguments);

}  // namespace qv::cli
