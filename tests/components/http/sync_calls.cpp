#include "sync_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

thread_local qv::test::SyncCalls* current = nullptr;

std::string Kind(int descriptor) {
  struct stat facts {};
  fstat(descriptor, &facts);
  return S_ISDIR(facts.st_mode) ? "directory" : "file of " + std::to_string(facts.st_size);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int fsync(int descriptor) {
  if (current != nullptr) current->Note("fsync " + Kind(descriptor));
  if (current != nullptr && current->TakeFailure()) return -1;
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

extern "C" __attribute__((visibility("default"))) int rename(const char* from, const char* to) noexcept {
  if (current != nullptr) current->Note("rename");
  return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

namespace qv::test {

SyncCalls::SyncCalls() {
  current = this;
}

SyncCalls::~SyncCalls() {
  current = nullptr;
}

void SyncCalls::FailSync(int error, int times) {
  error_ = error;
  failing_ = times;
}

bool SyncCalls::TakeFailure() {
  if (failing_ <= 0) return false;
  --failing_;
  errno = error_;
  return true;
}

}  // namespace qv::test
