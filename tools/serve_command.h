// `scriptwells serve`
#pragma once

#include <iosfwd>

#include "tools/options.h"

namespace qv::cli {

// Runs the development service until Ctrl-C or SIGTERM. Its address is the only line on `out`. Throws
// Failure.
void ServeCommand(const ServeOptions& options, std::ostream& out, std::ostream& err);

}  // namespace qv::cli
