#include "interrupted_connect.h"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

thread_local int failing = 0;
thread_local int failure = 0;

}  // namespace

// The program's own definition is found first, by libcurl too.
extern "C" __attribute__((visibility("default"))) int connect(int socket, const sockaddr* address,
                                                              socklen_t size) {
  if (failing <= 0) return static_cast<int>(syscall(SYS_connect, socket, address, size));
  --failing;
  errno = failure;
  return -1;
}

namespace qv::test {

FailingConnects::FailingConnects(int error, int times) noexcept {
  failure = error;
  failing = times;
}

FailingConnects::~FailingConnects() {
  failing = 0;
}

int FailingConnects::Left() const noexcept {
  return failing;
}

}  // namespace qv::test
