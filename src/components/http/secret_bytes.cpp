#include "components/http/secret_bytes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qv {
namespace {

constexpr std::size_t kFirstCapacity = 256;

}  // namespace

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

char* SecretBytes::Extend(std::size_t bytes) {
  if (bytes > capacity_ - size()) Reserve(std::max({size() + bytes, 2 * capacity_, kFirstCapacity}));
  char* const end = block_.get() + size();
  block_.get_deleter().used += bytes;
  return end;
}

void SecretBytes::Append(std::string_view bytes) {
  if (!bytes.empty()) std::memcpy(Extend(bytes.size()), bytes.data(), bytes.size());
}

}  // namespace qv
