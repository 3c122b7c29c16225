// Passwords that a command of the user prints.
#pragma once

#include <string>

namespace qv::cli {

// The first line that `command` prints on standard output, run by /bin/sh. Its standard input is empty, and
// its messages are shown. Throws Failure: kLocal if it fails or prints no password, and kInterrupted after
// Ctrl-C, when the command is stopped. No message contains what it printed.
std::string PasswordOfCommand(const std::string& command);

}  // namespace qv::cli
