// Notes this thread's calls of fsync() and rename() in order, and makes syncing fail. The test program has
// its own versions of both, which come before the C library's.
#pragma once

#include <string>
#include <vector>

namespace qv::test {

class SyncCalls {
 public:
  SyncCalls();
  ~SyncCalls();
  SyncCalls(const SyncCalls&) = delete;
  SyncCalls& operator=(const SyncCalls&) = delete;

  // "fsync file of 3", "rename", "fsync directory".
  const std::vector<std::string>& Lines() const { return lines_; }
  // The next `times` calls of fsync() fail with `error`.
  void FailSync(int error, int times);

  // For the functions in front.
  void Note(const std::string& line) { lines_.push_back(line); }
  bool TakeFailure();

 private:
  std::vector<std::string> lines_;
  int error_ = 0;
  int failing_ = 0;
};

}  // namespace qv::test
