// Standard output: a terminal, a file or a pipe.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

#include "tools/report/failure.h"

namespace qv::cli {

// Whether `out` is standard output and that is a terminal.
bool IsTerminal(const std::ostream& out);

// The columns of the terminal that `out` writes to; 0 if `out` is not a terminal or the width is unknown.
std::size_t TerminalWidth(const std::ostream& out);

// What to write to `out`: on a terminal the text with unsafe characters escaped (EscapeForTerminal), else the
// text itself, so that files and pipes get every byte.
std::string TextFor(const std::ostream& out, const std::string& text);

// The failure (kLocal) of a write to `out`, with this message. It is silent if the reader of a pipe has left,
// as `head` does.
Failure FailedOutput(const std::ostream& out, const std::string& message);

}  // namespace qv::cli
