// `scriptwells download`
#pragma once

#include <iosfwd>

#include "tools/options.h"

namespace qv::cli {

// Opens a session (or adopts the one of --usid), downloads the file, prints its path on `out` and closes the
// session on every way out. Throws Failure; notes go to `err`.
void DownloadCommand(const DownloadOptions& options, std::ostream& out, std::ostream& err);

}  // namespace qv::cli
