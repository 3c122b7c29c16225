// Files that the service keeps for a while: uploads, and what scripts publish.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "devservice/values/spooled_file.h"

namespace qv::devservice {

// Where the worker puts the first, second, ... file that it writes in one run.
std::string NumberedPath(const std::string& path, std::size_t number);

// The errno of a write that failed, as HTTP status: 507 when there is no room, else 500.
int StatusOfWriteError(int error);

// A fresh file that is being written, by one thread. Deleted at the end unless it was finished.
class SpoolWriter {
 public:
  // Creates the file, which must not exist; Error() reports a failure.
  explicit SpoolWriter(std::string path);
  ~SpoolWriter();
  SpoolWriter(const SpoolWriter&) = delete;
  SpoolWriter& operator=(const SpoolWriter&) = delete;

  // The errno of the first failure, 0 as long as there is none. Nothing is written after a failure.
  int Error() const { return error_; }
  // Both return false after a failure.
  bool Write(const char* bytes, std::size_t count);
  bool Close();

  std::uint64_t Size() const { return size_; }
  // Passes on the ownership of the file; after a successful Close only, and once.
  std::shared_ptr<const SpooledFile> TakeFile();
  // Keeps the file after the end of the writer, for another process.
  void LeaveFile() { path_.clear(); }

 private:
  std::string path_;
  int descriptor_ = -1;
  int error_ = 0;
  std::uint64_t size_ = 0;
};

// A private directory (mode 0700) below the system's temporary one, removed with all that is in it at the
// end. Thread-safe.
class SpoolDirectory {
 public:
  // Also removes the directories of this user's services that were killed. Throws std::runtime_error with a
  // message.
  SpoolDirectory();
  ~SpoolDirectory();
  SpoolDirectory(const SpoolDirectory&) = delete;
  SpoolDirectory& operator=(const SpoolDirectory&) = delete;

  // A path in the directory, another one at each call.
  std::string NewPath();

 private:
  std::string path_;
  int lock_ = -1;  // The directory itself, locked as long as the service lives.
  std::atomic<std::uint64_t> count_{0};
};

}  // namespace qv::devservice
