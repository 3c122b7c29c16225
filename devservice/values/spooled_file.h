// A finished file on disk, such as an upload or a file that a script published.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <string>
#include <utility>

namespace qv::devservice {

// Owns the file: the destructor deletes it, so hold the object as long as its bytes are needed. Immutable,
// any thread.
class SpooledFile {
 public:
  SpooledFile(std::string path, std::uint64_t size) : path_(std::move(path)), size_(size) {}
  ~SpooledFile() { unlink(path_.c_str()); }
  SpooledFile(const SpooledFile&) = delete;
  SpooledFile& operator=(const SpooledFile&) = delete;

  const std::string& Path() const { return path_; }
  std::uint64_t Size() const { return size_; }

 private:
  const std::string path_;
  const std::uint64_t size_;
};

}  // namespace qv::devservice
