#include "xml/start_memory.h"

#include <cstdint>
#include <new>

#include <xercesc/util/OutOfMemoryException.hpp>

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

constexpr std::size_t kAlignment = alignof(std::max_align_t);

}  // namespace

bool StartMemory::Reserve() noexcept {
  if (parts_ != 0) return true;  // the library is still started
  if (block_ == nullptr) block_ = static_cast<char*>(::operator new(kBlockSize, std::nothrow));
  used_ = 0;
  return block_ != nullptr;
}

void StartMemory::GiveBack() noexcept {
  if (parts_ != 0) {
    if (!lock_) lock_.emplace();
    return;
  }
  ::operator delete(block_);
  block_ = nullptr;
  lock_.reset();
}

StartMemory::Serving::Serving(StartMemory& memory) noexcept : memory_(memory) {
  memory_.served_ = std::this_thread::get_id();
}

StartMemory::Serving::~Serving() {
  memory_.served_ = std::thread::id();
}

void* StartMemory::allocate(XMLSize_t size) {
  if (served_ == std::this_thread::get_id()) {
    if (void* bytes = TakeFromBlock(size)) return bytes;
  }
  void* bytes = ::operator new(size, std::nothrow);
  if (bytes == nullptr) throw xc::OutOfMemoryException();
  return bytes;
}

// Null if the block has no room.
void* StartMemory::TakeFromBlock(std::size_t size) noexcept {
  if (size >= kBlockSize - used_) return nullptr;
  void* bytes = block_ + used_;
  used_ += (size + kAlignment - 1) / kAlignment * kAlignment;
  ++parts_;
  return bytes;
}

void StartMemory::deallocate(void* bytes) {
  const auto offset = reinterpret_cast<std::uintptr_t>(bytes) - reinterpret_cast<std::uintptr_t>(block_);
  if (block_ != nullptr && offset < kBlockSize) {
    --parts_;
  } else {
    ::operator delete(bytes);
  }
}

}  // namespace qv
