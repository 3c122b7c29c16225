// What this program's operator new gives out: how much, and whether it still does. Texts are not among it;
// their blocks come from malloc.
#pragma once

#include <cstddef>

namespace qv {

// Bytes that live, with what the heap adds to each block.
std::size_t HeapBytes();
// The most that lived at once since ForgetHeapPeak.
std::size_t HeapPeak();
void ForgetHeapPeak();
// Blocks given out since the program began.
std::size_t HeapBlocks();

// While one lives, only `blocks` more are given out, then std::bad_alloc is thrown.
class ScarceHeap {
 public:
  explicit ScarceHeap(long blocks);
  ScarceHeap(const ScarceHeap&) = delete;
  ScarceHeap& operator=(const ScarceHeap&) = delete;
  ~ScarceHeap();
};

}  // namespace qv
