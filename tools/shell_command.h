// The steps of `scriptwells shell`, on a server or in a service of this program.
#pragma once

#include <iosfwd>

#include "tools/input/parsed_options.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

// Checks all that can be wrong on this side before any request is sent, and asks for the password. The server
// of
// --local is known later. Throws Failure.
SessionSettings PrepareShell(const ShellOptions& options);

// Holds one session on the server of the settings, until the input ends. Reports failures on `err` if a
// person types; otherwise throws the first.
void RunShell(const ShellOptions& options, const SessionSettings& settings, std::ostream& out,
              std::ostream& err);

}  // namespace qv::cli
