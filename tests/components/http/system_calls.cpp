#include "system_calls.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

using qv::test::SystemCalls;

namespace {

thread_local SystemCalls* current = nullptr;

std::string Kind(int descriptor) {
  struct stat facts {};
  fstat(descriptor, &facts);
  return S_ISDIR(facts.st_mode) ? "directory" : "file of " + std::to_string(facts.st_size);
}

template <class... Arguments>
int Call(const char* function, long number, Arguments... arguments) {
  return SystemCalls::Passes(function) ? static_cast<int>(syscall(number, arguments...)) : -1;
}

}  // namespace

// A program hides what it defines; these are for every library in the process.
#pragma GCC visibility push(default)

extern "C" {

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's have reserved names.
int connect(int socket, const sockaddr* address, socklen_t size) {
  return Call("connect", SYS_connect, socket, address, size);
}

int fsync(int descriptor) {
  SystemCalls::Note("fsync " + Kind(descriptor));
  return Call("fsync", SYS_fsync, descriptor);
}

int rename(const char* from, const char* to) noexcept {
  SystemCalls::Note("rename");
  return Call("rename", SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0);
}

int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to, unsigned flags) noexcept {
  return Call("renameat2", SYS_renameat2, fromDirectory, from, toDirectory, to, flags);
}

int link(const char* from, const char* to) noexcept {
  return Call("link", SYS_link, from, to);
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

}  // extern "C"

#pragma GCC visibility pop

namespace qv::test {

SystemCalls::SystemCalls() {
  current = this;
}

SystemCalls::~SystemCalls() {
  current = nullptr;
}

void SystemCalls::Fail(const std::string& function, int error, int times) {
  failures_[function] = {error, times};
}

bool SystemCalls::Passes(const char* function) {
  if (current == nullptr) return true;
  const auto failure = current->failures_.find(function);
  if (failure == current->failures_.end() || failure->second.times <= 0) return true;
  --failure->second.times;
  errno = failure->second.error;
  return false;
}

void SystemCalls::Note(const std::string& line) {
  if (current != nullptr) current->lines_.push_back(line);
}

}  // namespace qv::test
