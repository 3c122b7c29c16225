#include "refused_memory.h"

#include <cerrno>
#include <cstdlib>
#include <new>

namespace {

bool counting = false;
long count = 0;
long refusedNumber = 0;
bool refusesFromThenOn = false;

bool Refuses() noexcept {
  if (!counting || ++count < refusedNumber || refusedNumber == 0) return false;
  return count == refusedNumber || refusesFromThenOn;
}

}  // namespace

#ifdef __SANITIZE_ADDRESS__

namespace {
void* Give(std::size_t size) noexcept {
  return Refuses() ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void* GiveOrThrow(std::size_t size) {
  void* block = Give(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
}  // namespace

void* operator new(std::size_t size) {
  return GiveOrThrow(size);
}
void* operator new[](std::size_t size) {
  return GiveOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  return Give(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  return Give(size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}

#else

// The C library's own names for what is replaced here.
extern "C" {
void* __libc_malloc(std::size_t size);                      // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t count, std::size_t size);   // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* block, std::size_t size);        // NOLINT(bugprone-reserved-identifier)
void* __libc_memalign(std::size_t alignment, std::size_t);  // NOLINT(bugprone-reserved-identifier)

void* malloc(std::size_t size) {
  if (!Refuses()) return __libc_malloc(size);
  errno = ENOMEM;
  return nullptr;
}

void* calloc(std::size_t pieces, std::size_t size) {
  if (!Refuses()) return __libc_calloc(pieces, size);
  errno = ENOMEM;
  return nullptr;
}

void* realloc(void* block, std::size_t size) {
  if (!Refuses()) return __libc_realloc(block, size);
  errno = ENOMEM;
  return nullptr;
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  if (!Refuses()) return __libc_memalign(alignment, size);
  errno = ENOMEM;
  return nullptr;
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  if (Refuses()) return ENOMEM;
  *block = __libc_memalign(alignment, size);
  return *block == nullptr ? ENOMEM : 0;
}
}

#endif

namespace qv {

void RefuseAllocation(long number, Refusal refusal) noexcept {
  refusedNumber = number;
  refusesFromThenOn = refusal == Refusal::kFromThenOn;
  count = 0;
  counting = true;
}

long StopRefusing() noexcept {
  counting = false;
  return count;
}

}  // namespace qv
