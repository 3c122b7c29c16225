// `scriptwells registry`
#pragma once

#include <iosfwd>

#include "tools/exit_status.h"
#include "tools/options.h"

namespace qv::cli {

// Prints what was asked for on `out`, damaged files on `err`. kFault: no file has the key; kLocal: a file is
// damaged. Throws Failure (kLocal) when nothing can be written, and for a key or value that cannot stand in
// a file.
ExitStatus RegistryCommand(const RegistryOptions& options, std::ostream& out, std::ostream& err);

}  // namespace qv::cli
