// Passwords.
#pragma once

#include <string>

#include "tools/input/parsed_options.h"

namespace qv::cli {

// The password from the first of: file, command, standard input, the variable SCRIPTWELLS_PASSWORD, a
// question on the terminal (only if a user is named, and standard input is a terminal and not
// `inputIsTaken`); else empty. With a tape to play, no command runs and nobody is asked. Throws Failure
// (kLocal, kInterrupted).
std::string FindPassword(const SessionOptions& options, bool inputIsTaken = false);

}  // namespace qv::cli
