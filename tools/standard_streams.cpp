#include "tools/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace qv::cli {

namespace {

bool IsClosed(int descriptor) {
  return ::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF;
}

}  // namespace

bool OpenClosedStreams() noexcept {
  // In this order the lowest free number is always the wanted one.
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const int wrongWay = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (IsClosed(stream) && ::open("/dev/null", wrongWay) != stream) return false;
  }
  return true;
}

}  // namespace qv::cli
