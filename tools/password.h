// Where the password comes from, and what a connection string can carry.
#pragma once

#include <string>

#include "tools/options.h"

namespace qv::cli {

// The connection string has no escape: ';' ends a value and a second '=' cuts it. Throws Failure (kLocal) for
// such a value, for text that is not UTF-8 and for control characters. `what` is such as "user name"; the
// value itself is not repeated, since it may be a password.
void CheckCredential(const std::string& value, const std::string& what);

// The first of: file, standard input, the variable SCRIPTWELLS_PASSWORD, a question on the terminal (only
// when a user is named, and standard input is a terminal that is not taken for something else); else empty.
// Checked as above. Throws Failure (kLocal, kInterrupted).
std::string FindPassword(const SessionOptions& options, bool inputIsTaken = false);

}  // namespace qv::cli
