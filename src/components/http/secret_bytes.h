// Sent and received bytes, which may contain a password or a session id. They are cleared before their memory
// is freed, also when they grow. Failure: std::bad_alloc.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace qv {

// Clears the first `used` bytes of a block before freeing it.
struct ClearingDelete {
  std::size_t used = 0;
  void operator()(char* block) const noexcept;
};
using SecretBlock = std::unique_ptr<char[], ClearingDelete>;

// All bytes count as used; they are not initialized.
SecretBlock NewSecretBlock(std::size_t size);

class SecretBytes {
 public:
  void Reserve(std::size_t capacity);
  void Append(std::string_view bytes);
  // Appends uninitialized bytes, which the caller must write.
  char* Extend(std::size_t bytes);
  std::string_view view() const noexcept { return {block_.get(), size()}; }
  std::size_t size() const noexcept { return block_.get_deleter().used; }

 private:
  SecretBlock block_;
  std::size_t capacity_ = 0;
};

}  // namespace qv
