// Files that the service keeps for a while: uploads, and what scripts publish.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace qv::devservice {

// A finished file. Owns it: the destructor deletes it, so whoever still needs its bytes holds the object.
// Immutable, any thread.
class SpooledFile {
 public:
  SpooledFile(std::string path, std::uint64_t size) : path_(std::move(path)), size_(size) {}
  ~SpooledFile();
  SpooledFile(const SpooledFile&) = delete;
  SpooledFile& operator=(const SpooledFile&) = delete;

  const std::string& Path() const { return path_; }
  std::uint64_t Size() const { return size_; }

 private:
  const std::string path_;
  const std::uint64_t size_;
};

// The errno of a write that failed, as HTTP status: 507 when there is no room, else 500.
int StatusOfWriteError(int error);

// A fresh file that is being written, by one thread. Deleted at the end unless it was finished.
class SpoolWriter {
 public:
  // Creates the file, which must not exist; Error() tells when that failed.
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
  // Gives the file away; after a successful Close only, and once.
  std::shared_ptr<const SpooledFile> TakeFile();
  // Leaves the file where it is; another process takes it from there.
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
  // Also removes the directories of this user's services that were killed. Throws std::runtime_error with
  // words for people.
  SpoolDirectory();
  ~SpoolDirectory();
  SpoolDirectory(const SpoolDirectory&) = delete;
  SpoolDirectory& operator=(const SpoolDirectory&) = delete;

  // A path in the directory that was not handed out before.
  std::string NewPath();

 private:
  std::string path_;
  int lock_ = -1;  // The directory itself, locked as long as the service lives.
  std::atomic<std::uint64_t> count_{0};
};

}  // namespace qv::devservice
