#include "components/recordlist/heap_watch.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kBlockHead = sizeof(std::size_t);

std::size_t bytes = 0;
std::size_t peak = 0;
std::size_t blocks = 0;
long allowed = -1;  // negative: no limit

void* Give(std::size_t size) {
  if (allowed == 0) throw std::bad_alloc();
  if (allowed > 0) --allowed;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  ++blocks;
  bytes += malloc_usable_size(block) + kBlockHead;
  peak = std::max(peak, bytes);
  return block;
}

void Take(void* block) noexcept {
  if (block == nullptr) return;
  bytes -= malloc_usable_size(block) + kBlockHead;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  return Give(size);
}
void* operator new[](std::size_t size) {
  return Give(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return Give(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* block) noexcept {
  Take(block);
}
void operator delete[](void* block) noexcept {
  Take(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Take(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  Take(block);
}

namespace qv {

std::size_t HeapBytes() {
  return bytes;
}
std::size_t HeapPeak() {
  return peak;
}
void ForgetHeapPeak() {
  peak = bytes;
}
std::size_t HeapBlocks() {
  return blocks;
}

ScarceHeap::ScarceHeap(long blocksAllowed) {
  allowed = blocksAllowed;
}
ScarceHeap::~ScarceHeap() {
  allowed = -1;
}

}  // namespace qv
