// Passwords, and the values that a connection string can hold.
#pragma once

#include <string>

#include "tools/input/parsed_options.h"

namespace qv::cli {

// A connection string has no escape: ';' ends a value and a second '=' cuts it. Throws Failure (kLocal) for
// such a value, for text that is not UTF-8 and for control characters. `what` names the value in the message,
// such as "user name"; the message does not repeat the value, since it may be a password.
void CheckCredential(const std::string& value, const std::string& what);

// The password from the first of: file, standard input, the variable SCRIPTWELLS_PASSWORD, a question on the
// terminal (only if a user is named, and standard input is a terminal and not `inputIsTaken`); else empty.
// Checked as above. Throws Failure (kLocal, kInterrupted).
std::string FindPassword(const SessionOptions& options, bool inputIsTaken = false);

}  // namespace qv::cli
