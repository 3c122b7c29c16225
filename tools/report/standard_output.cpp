#include "tools/report/standard_output.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

// The stream does not keep why a write failed. For a pipe without a reader, poll reports an error.
bool HasNoReader(const std::ostream& out) {
  if (&out != &std::cout) return false;
  pollfd end{STDOUT_FILENO, POLLOUT, 0};
  return ::poll(&end, 1, 0) == 1 && (end.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace

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

Failure FailedOutput(const std::ostream& out, const std::string& message) {
  const Failure failure(ExitStatus::kLocal, message);
  return HasNoReader(out) ? failure.Silent() : failure;
}

}  // namespace qv::cli
