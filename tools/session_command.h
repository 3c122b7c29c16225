// `scriptwells session open` and `scriptwells session close`
#pragma once

#include <iosfwd>

#include "tools/options.h"

namespace qv::cli {

// Opens a session, prints its id on `out` and leaves it open; or closes the one of --usid. Throws Failure; a
// session whose id could not be printed is closed again. Notes go to `err`.
void SessionCommand(const SessionCommandOptions& options, std::ostream& out, std::ostream& err);

}  // namespace qv::cli
