#include "allocations.h"

#include <cerrno>
#include <cstddef>

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own names for what is replaced here.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {
thread_local long long count = 0;
}

// A program hides what it defines; these are for every library in the process.
#pragma GCC visibility push(default)

extern "C" {

void* malloc(std::size_t size) {
  ++count;
  return __libc_malloc(size);
}

void* calloc(std::size_t number, std::size_t size) {
  ++count;
  return __libc_calloc(number, size);
}

void* realloc(void* block, std::size_t size) {
  ++count;
  return __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
  ++count;
  return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** place, std::size_t alignment, std::size_t size) {
  void* const block = memalign(alignment, size);
  if (block == nullptr) return ENOMEM;
  *place = block;
  return 0;
}

}  // extern "C"

#pragma GCC visibility pop

namespace qv::bench {

long long Allocations() noexcept {
  return count;
}

}  // namespace qv::bench
