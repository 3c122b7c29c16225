#include "components/http/secret_bytes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qv {

void ClearingDelete::operator()(char* block) const noexcept {
  explicit_bzero(block, used);
  delete[] block;
}

SecretBlock NewSecretBlock(std::size_t size) {
  return {new char[size], ClearingDelete{size}};
}

void SecretBytes::Reserve(std::size_t capacity) {
  if (capacity <= capacity_) return;
  SecretBlock larger(new char[capacity], ClearingDelete{size()});
  if (size() != 0) std::memcpy(larger.get(), block_.get(), size());
  block_ = std::move(larger);
  capacity_ = capacity;
}

void SecretBytes::Append(std::string_view bytes) {
  if (bytes.empty()) return;
  if (bytes.size() > capacity_ - size()) Reserve(std::max(size() + bytes.size(), 2 * capacity_));
  std::memcpy(block_.get() + size(), bytes.data(), bytes.size());
  block_.get_deleter().used += bytes.size();
}

}  // namespace qv
