// Owns a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace qv {

class UniqueDescriptor {
 public:
  UniqueDescriptor() noexcept = default;
  explicit UniqueDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  UniqueDescriptor(UniqueDescriptor&& other) noexcept : descriptor_(other.Release()) {}
  UniqueDescriptor& operator=(UniqueDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~UniqueDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  bool IsOpen() const noexcept { return descriptor_ >= 0; }
  int Get() const noexcept { return descriptor_; }
  // Transfers the descriptor to the caller.
  int Release() noexcept { return std::exchange(descriptor_, -1); }

 private:
  int descriptor_ = -1;
};

}  // namespace qv
