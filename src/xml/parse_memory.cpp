#include "xml/parse_memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include <xercesc/util/OutOfMemoryException.hpp>

#include "system/thread_slot.h"

namespace qv {

namespace xc = XERCES_CPP_NAMESPACE;

// The header of a block from the system. The allocated parts follow it.
struct alignas(std::max_align_t) ParseMemory::Block {
  Block* previous;
  Block* next;
  std::size_t size;
  std::size_t mapped;  // its size when it was mapped, else 0
};

// The header of every allocated part.
struct alignas(std::max_align_t) ParseMemory::Piece {
  std::size_t total;  // with this header
  Block* alone;       // its block if no other part shares it, else null
};

namespace {

// A parser and the document of a small answer take 240 kB, most of it the library's read buffers.
constexpr std::size_t kSharedBlockSize = std::size_t{256} * 1024;
constexpr std::size_t kLargestSpare = std::size_t{1024} * 1024;
// Larger parts get a separate block once the shared one is full, and are freed at once.
constexpr std::size_t kLargestShared = std::size_t{32} * 1024;
// A document of this size gets large blocks with large pages: allocating small ones takes a fifth of the time
// of a large parse. The system allocates pages on first use.
constexpr std::size_t kLarge = std::size_t{4} * 1024 * 1024;
constexpr std::size_t kLargestBlock = std::size_t{32} * 1024 * 1024;
constexpr std::size_t kLargestSharedOfLarge = std::size_t{1024} * 1024;
// The library recovers badly when a small allocation fails, so small requests may use a reserve. A growing
// document makes large requests too, which fail.
constexpr std::size_t kSmallRequest = 1024;
constexpr std::size_t kReserve = std::size_t{16} * 1024 * 1024;
constexpr std::size_t kLargestRequest = std::size_t{1} << 39;  // more is an error
constexpr std::size_t kAlignment = alignof(std::max_align_t);
// A part that grows to this has its own pages.
constexpr std::size_t kMappedPart = std::size_t{512} * 1024;
constexpr std::size_t kPage = 4096;
constexpr std::size_t kLargePage = std::size_t{2} * 1024 * 1024;

// Keeps one shared block between two documents of a thread, so that a small one needs no system call.
ThreadSlot& SpareBlock() noexcept {
  static ThreadSlot slot(&std::free);
  return slot;
}

std::size_t RoundedUp(std::size_t size, std::size_t step) noexcept {
  return (size + step - 1) / step * step;
}

// A wish only.
void AskForLargePages(void* bytes, std::size_t size) noexcept {
  if (size < kLarge) return;
  const std::size_t before = reinterpret_cast<std::uintptr_t>(bytes) % kPage;
  madvise(static_cast<char*>(bytes) - before, size + before, MADV_HUGEPAGE);
}

void* MapBlock(std::size_t size) noexcept {
  void* bytes = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (bytes == MAP_FAILED) return nullptr;
  AskForLargePages(bytes, size);
  return bytes;
}

// Twice what is asked for: pages that are not touched cost nothing, and a part that grows seldom moves. The
// system aligns whole large pages.
std::size_t MappedFor(std::size_t size) noexcept {
  return RoundedUp(2 * size, kLargePage);
}

}  // namespace

ParseMemory::ParseMemory() noexcept = default;

// Null for lack of memory. A spare block that is too small goes.
void* ParseMemory::TakeSpare(std::size_t size) noexcept {
  void* const spare = SpareBlock().Get();
  if (spare == nullptr) return nullptr;
  SpareBlock().Set(nullptr);
  if (static_cast<Block*>(spare)->size >= size) return spare;
  std::free(spare);
  return nullptr;
}

void ParseMemory::KeepSpare(Block* block) noexcept {
  if (block->size > kLargestSpare || SpareBlock().Get() != nullptr || !SpareBlock().Set(block))
    std::free(block);
}

ParseMemory::~ParseMemory() {
  GiveAllBack();
}

void ParseMemory::GiveAllBack() noexcept {
  while (blocks_ != nullptr) {
    Block* block = blocks_;
    blocks_ = block->next;
    if (clears_) Clear(block);
    Give(block, block == shared_);
  }
  shared_ = nullptr;
  next_ = nullptr;
  top_ = nullptr;
  end_ = nullptr;
  inUse_ = 0;
}

// Mapped memory returns to the system, which clears it. A spare block may be much larger than what was used.
void ParseMemory::Clear(Block* block) const noexcept {
  if (block->mapped != 0) return;
  char* const begin = reinterpret_cast<char*>(block + 1);
  const char* const end = block == shared_ ? top_ : reinterpret_cast<char*>(block) + block->size;
  explicit_bzero(begin, static_cast<std::size_t>(end - begin));
}

void ParseMemory::Give(Block* block, bool isSpare) noexcept {
  if (block->mapped != 0) {
    munmap(block, block->mapped);
  } else if (isSpare) {
    KeepSpare(block);
  } else {
    std::free(block);
  }
}

std::size_t ParseMemory::LargestShared() const noexcept {
  return inUse_ < kLarge ? kLargestShared : kLargestSharedOfLarge;
}

void* ParseMemory::allocate(std::size_t size) {
  if (size > kLargestRequest) throw xc::OutOfMemoryException();
  const std::size_t total = sizeof(Piece) + RoundedUp(size, kAlignment);
  RequireRoom(total, size < kSmallRequest ? SmallRequestLimit() : limit_);
  if (shared_ == nullptr) StartBlock();
  if (void* bytes = TakeFromBlock(total)) return bytes;
  if (total > LargestShared()) return TakeAlone(total);
  StartBlock();
  return TakeFromBlock(total);
}

void ParseMemory::RequireRoom(std::size_t more, std::size_t limit) const {
  if (inUse_ > limit || more > limit - inUse_) throw xc::OutOfMemoryException();
}

std::size_t ParseMemory::SmallRequestLimit() const noexcept {
  return limit_ > kLargestRequest ? limit_ : limit_ + kReserve;
}

// Null if the shared block has no room.
void* ParseMemory::TakeFromBlock(std::size_t total) noexcept {
  if (!HasRoom(total)) return nullptr;
  auto* piece = new (next_) Piece{total, nullptr};
  next_ += total;
  top_ = std::max(top_, next_);
  inUse_ += total;
  return piece + 1;
}

void* ParseMemory::TakeAlone(std::size_t total) {
  void* raw = std::malloc(sizeof(Block) + total);
  if (raw == nullptr) throw xc::OutOfMemoryException();
  auto* block = new (raw) Block{nullptr, nullptr, sizeof(Block) + total, 0};
  Link(block);
  inUse_ += total;
  return new (block + 1) Piece{total, block} + 1;
}

void* ParseMemory::TakeMapped(std::size_t total) {
  RequireRoom(total, limit_);
  const std::size_t mapped = MappedFor(sizeof(Block) + total);
  void* raw = MapBlock(mapped);
  if (raw == nullptr) throw xc::OutOfMemoryException();
  auto* block = new (raw) Block{nullptr, nullptr, mapped, mapped};
  Link(block);
  inUse_ += total;
  return new (block + 1) Piece{total, block} + 1;
}

void* ParseMemory::ResizeMapped(Piece* piece, std::size_t total) {
  if (total > piece->total) RequireRoom(total - piece->total, limit_);
  if (sizeof(Block) + total > piece->alone->mapped) piece = Remap(piece, MappedFor(sizeof(Block) + total));
  inUse_ += total - piece->total;
  piece->total = total;
  return piece + 1;
}

ParseMemory::Piece* ParseMemory::Remap(Piece* piece, std::size_t mapped) {
  Block* const old = piece->alone;
  void* raw = mremap(old, old->mapped, mapped, MREMAP_MAYMOVE);
  if (raw == MAP_FAILED) throw xc::OutOfMemoryException();
  auto* block = static_cast<Block*>(raw);
  Relink(block);
  if (block->mapped < kLarge) AskForLargePages(block, mapped);
  block->mapped = mapped;
  block->size = mapped;
  piece = reinterpret_cast<Piece*>(block + 1);
  piece->alone = block;
  return piece;
}

bool ParseMemory::IsNewest(const Piece* piece) const noexcept {
  return piece->alone == nullptr && reinterpret_cast<const char*>(piece) + piece->total == next_;
}

// In place. False if it is not the newest part, or the block or the limit has no room.
bool ParseMemory::ResizeNewest(Piece* piece, std::size_t total) noexcept {
  if (!IsNewest(piece)) return false;
  const std::size_t used = inUse_ - piece->total;
  char* const begin = reinterpret_cast<char*>(piece);
  if (used + total > limit_ || static_cast<std::size_t>(end_ - begin) < total) return false;
  inUse_ = used + total;
  next_ = begin + total;
  top_ = std::max(top_, next_);
  piece->total = total;
  return true;
}

void* ParseMemory::Resize(void* bytes, std::size_t size) {
  if (size > kLargestRequest) throw xc::OutOfMemoryException();
  const std::size_t total = sizeof(Piece) + RoundedUp(size, kAlignment);
  if (bytes == nullptr) return total < kMappedPart || HasRoom(total) ? allocate(size) : TakeMapped(total);
  Piece* const piece = static_cast<Piece*>(bytes) - 1;
  const bool isMapped = piece->alone != nullptr && piece->alone->mapped != 0;
  if (isMapped && total >= kMappedPart) return ResizeMapped(piece, total);
  if (ResizeNewest(piece, total)) return bytes;
  void* const moved = total >= kMappedPart ? TakeMapped(total) : allocate(size);
  std::memcpy(moved, bytes, std::min(piece->total - sizeof(Piece), size));
  deallocate(bytes);
  return moved;
}

void ParseMemory::StartBlock() {
  const std::size_t mapped = inUse_ < kLarge ? 0 : std::min(inUse_, kLargestBlock);
  void* raw = mapped == 0 ? TakeSpare(kSharedBlockSize) : MapBlock(mapped);
  if (raw != nullptr) return ShareBlock(raw, mapped == 0 ? static_cast<Block*>(raw)->size : mapped, mapped);
  raw = mapped == 0 ? std::malloc(kSharedBlockSize) : nullptr;
  if (raw == nullptr) throw xc::OutOfMemoryException();
  ShareBlock(raw, kSharedBlockSize, 0);
}

void ParseMemory::ShareBlock(void* memory, std::size_t size, std::size_t mapped) noexcept {
  shared_ = new (memory) Block{nullptr, nullptr, size, mapped};
  Link(shared_);
  next_ = static_cast<char*>(memory) + sizeof(Block);
  top_ = next_;
  end_ = static_cast<char*>(memory) + size;
}

bool ParseMemory::Expect(std::size_t bytes) noexcept {
  const std::size_t size =
      std::max(RoundedUp(sizeof(Block) + sizeof(Piece) + bytes, kPage), kSharedBlockSize);
  if (blocks_ != nullptr || size > limit_) return false;
  if (size > kLargestBlock) return true;
  if (void* spare = size <= kLargestSpare ? TakeSpare(size) : nullptr) {
    ShareBlock(spare, static_cast<Block*>(spare)->size, 0);
    return true;
  }
  void* raw = std::malloc(size);
  if (raw == nullptr) return false;
  AskForLargePages(raw, size);
  ShareBlock(raw, size, 0);
  return true;
}

void ParseMemory::deallocate(void* bytes) {
  if (bytes == nullptr) return;
  const Piece* piece = static_cast<Piece*>(bytes) - 1;
  const std::size_t total = piece->total;
  if (Block* block = piece->alone) {
    Unlink(block);
    if (clears_) Clear(block);
    Give(block, false);
    inUse_ -= total;
  } else if (IsNewest(piece)) {
    next_ -= total;  // the newest part: its memory can be reused
    inUse_ -= total;
  }
}

void ParseMemory::Link(Block* block) noexcept {
  block->next = blocks_;
  if (blocks_ != nullptr) blocks_->previous = block;
  blocks_ = block;
}

// After it has moved.
void ParseMemory::Relink(Block* block) noexcept {
  if (block->next != nullptr) block->next->previous = block;
  (block->previous != nullptr ? block->previous->next : blocks_) = block;
}

void ParseMemory::Unlink(Block* block) noexcept {
  if (block->next != nullptr) block->next->previous = block->previous;
  (block->previous != nullptr ? block->previous->next : blocks_) = block->next;
}

}  // namespace qv
