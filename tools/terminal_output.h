// Standard output, when it is a terminal.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace qv::cli {

// Whether `out` is standard output and that is a terminal.
bool IsTerminal(const std::ostream& out);

// The width of the terminal that `out` is; 0 when it is none, or does not tell.
std::size_t TerminalWidth(const std::ostream& out);

// What to write to `out`: on a terminal the text with escapes for what would drive it (EscapeForTerminal),
// else the text itself, so that files and pipes get every byte.
std::string TextFor(const std::ostream& out, const std::string& text);

}  // namespace qv::cli
