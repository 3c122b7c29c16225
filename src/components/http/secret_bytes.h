// Bytes that may hold a password or a session's id: what is sent, and what was received. They are cleared
// when they go, and so is what they leave behind when they grow. Failure: std::bad_alloc.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace qv {

// Clears the first `used` bytes of a block before it goes.
struct ClearingDelete {
  std::size_t used = 0;
  void operator()(char* block) const noexcept;
};
using SecretBlock = std::unique_ptr<char[], ClearingDelete>;

// All of it counts as used; its content is not set.
SecretBlock NewSecretBlock(std::size_t size);

class SecretBytes {
 public:
  void Reserve(std::size_t capacity);
  void Append(std::string_view bytes);
  std::string_view view() const noexcept { return {block_.get(), size()}; }
  std::size_t size() const noexcept { return block_.get_deleter().used; }

 private:
  SecretBlock block_;
  std::size_t capacity_ = 0;
};

}  // namespace qv
