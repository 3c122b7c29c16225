// The commands that call, in libraries that are loaded for them.
#pragma once

#include <iosfwd>

#include "tools/input/parsed_options.h"

namespace qv::cli {

// Runs the command as RunCallingCommand and RunServiceCommand do. If the library is missing or of another
// version: reports that, and returns kLocal.
int RunLoadedCommand(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) noexcept;

}  // namespace qv::cli
