#include "tools/failed_output.h"

#include <poll.h>
#include <unistd.h>

#include <iostream>

namespace qv::cli {

namespace {

// The stream does not keep why a write failed. Of a pipe without a reader poll tells an error.
bool HasNoReader(const std::ostream& out) {
  if (&out != &std::cout) return false;
  pollfd end{STDOUT_FILENO, POLLOUT, 0};
  return ::poll(&end, 1, 0) == 1 && (end.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace

Failure FailedOutput(const std::ostream& out, const std::string& words) {
  const Failure failure(ExitStatus::kLocal, words);
  return HasNoReader(out) ? failure.Silent() : failure;
}

}  // namespace qv::cli
