// A file in memory with a path, for readers that open what they read.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

class MemoryFile {
 public:
  MemoryFile() : descriptor_(::memfd_create("fuzz", MFD_CLOEXEC)) {
    if (descriptor_ < 0) std::abort();
  }
  ~MemoryFile() { ::close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

  // In place of what it had.
  void Write(std::string_view bytes) const {
    if (::ftruncate(descriptor_, 0) != 0) std::abort();
    if (::pwrite(descriptor_, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
      std::abort();
  }

 private:
  int descriptor_;
};
