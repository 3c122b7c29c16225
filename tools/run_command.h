// `scriptwells run` and `scriptwells run-document`
#pragma once

#include <iosfwd>

#include "tools/options.h"

namespace qv::cli {

// Opens a session, runs the script, prints its answer on `out` and closes the session on every way out.
// Throws Failure for what went wrong first; notes go to `err`.
void RunCommand(const RunOptions& options, std::ostream& out, std::ostream& err);

}  // namespace qv::cli
