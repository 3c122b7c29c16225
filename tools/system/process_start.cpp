#include "tools/system/process_start.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace qv::cli {

namespace {

bool OpenIfClosed(int descriptor, int mode) {
  const bool isClosed = ::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF;
  return !isClosed || ::open("/dev/null", mode) == descriptor;
}

const char* Variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : nullptr;
}

}  // namespace

bool OpenClosedStreams() noexcept {
  // In this order open() returns the wanted number, since that is always the lowest free one.
  return OpenIfClosed(STDIN_FILENO, O_WRONLY) && OpenIfClosed(STDOUT_FILENO, O_RDONLY) &&
         OpenIfClosed(STDERR_FILENO, O_RDONLY);
}

void SetTempDirectory() {
  if (Variable("TEMP") != nullptr || Variable("TMP") != nullptr) return;
  const char* usual = Variable("TMPDIR");
  ::setenv("TEMP", usual != nullptr ? usual : "/tmp", 1);
}

}  // namespace qv::cli
