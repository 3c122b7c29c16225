#include "tools/terminal_output.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

#include "tools/unsafe_characters.h"

namespace qv::cli {

bool IsTerminal(const std::ostream& out) {
  return &out == &std::cout && ::isatty(STDOUT_FILENO) == 1;
}

std::size_t TerminalWidth(const std::ostream& out) {
  winsize size{};
  if (!IsTerminal(out)) return 0;
  return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::string TextFor(const std::ostream& out, const std::string& text) {
  return IsTerminal(out) ? EscapeForTerminal(text) : text;
}

}  // namespace qv::cli
