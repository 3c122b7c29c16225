#include "qvscriptwells/wide_string.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/secret_text.h"
#include "text/string_block.h"

namespace qv {
namespace {

struct Header {
  std::atomic<std::uint32_t> owners;
  std::atomic<std::uint32_t> secretUnits;  // at the front; kAllUnits for all
  std::size_t length;
};

constexpr std::uint32_t kAllUnits = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kLargePage = std::size_t{2} << 20;
constexpr std::size_t kLargestReused = std::size_t{32} << 20;
constexpr std::size_t kLargeBlock = std::size_t{4} << 20;
constexpr std::size_t kMaxUnits =
    (std::numeric_limits<std::size_t>::max() - sizeof(Header) - kLargePage) / 2 - 1;

Header* HeaderOf(const char16_t* text) noexcept {
  return reinterpret_cast<Header*>(const_cast<char16_t*>(text)) - 1;
}
char16_t* UnitsOf(Header* header) noexcept {
  return reinterpret_cast<char16_t*>(header + 1);
}
std::size_t BlockBytes(std::size_t units) noexcept {
  return sizeof(Header) + (units + 1) * sizeof(char16_t);
}

// The number of secret units at the front.
std::size_t SecretUnits(const char16_t* text) noexcept {
  const std::size_t marked = HeaderOf(text)->secretUnits.load(std::memory_order_relaxed);
  return marked == kAllUnits ? StringLength(text) : std::min(marked, StringLength(text));
}

void FreeBlock(Header* header) noexcept {
  char16_t* const text = UnitsOf(header);
  if (IsSecret(text)) explicit_bzero(text, SecretUnits(text) * sizeof(char16_t));
  std::free(header);
}

// A long text is usually written once and read once, so page faults would be most of its cost.
void AskForLargePages(void* memory, std::size_t bytes) noexcept {
  const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + kLargePage - 1) / kLargePage * kLargePage;
  const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) / kLargePage * kLargePage;
  madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);  // a failure changes nothing
}

// The C library gets the largest blocks from the system each time, so they consist of large pages only.
void* AllocateBlock(std::size_t bytes) noexcept {
  const bool isReused = bytes <= kLargestReused;
  if (!isReused) bytes = (bytes + kLargePage - 1) / kLargePage * kLargePage;
  void* const memory = isReused ? std::malloc(bytes) : std::aligned_alloc(kLargePage, bytes);
  if (memory != nullptr && bytes >= kLargeBlock) AskForLargePages(memory, bytes);
  return memory;
}

// Null for lack of memory; the old block is then still valid. Does not clear the old memory.
BStr Reallocate(BStr text, std::size_t capacity) noexcept {
  if (capacity > kMaxUnits) return nullptr;
  void* const memory = std::realloc(static_cast<void*>(HeaderOf(text)), BlockBytes(capacity));
  return memory == nullptr ? nullptr : UnitsOf(static_cast<Header*>(memory));
}

BStr MoveSecret(BStr text, std::size_t capacity) {
  BStr moved = NewStringBlock(capacity);
  MarkSecret(moved);
  const std::size_t length = std::min(StringLength(text), capacity);
  std::memcpy(moved, text, length * sizeof(char16_t));
  SetStringLength(moved, length);
  FreeBlock(HeaderOf(text));
  return moved;
}

// The secret front is saved meanwhile, so that a long text need not be copied.
BStr ReallocateWithoutFront(BStr text, std::size_t capacity, std::size_t secretUnits) {
  const WideString front(std::u16string_view(text, secretUnits));
  MarkSecret(front);
  explicit_bzero(text, secretUnits * sizeof(char16_t));
  BStr moved = Reallocate(text, capacity);
  std::memcpy(moved == nullptr ? text : moved, front.data(), secretUnits * sizeof(char16_t));
  return moved;
}

}  // namespace

BStr NewStringBlock(std::size_t capacity) {
  void* memory = capacity <= kMaxUnits ? AllocateBlock(BlockBytes(capacity)) : nullptr;
  if (memory == nullptr) _com_raise_error(E_OUTOFMEMORY);
  BStr text = UnitsOf(new (memory) Header{{1}, {0}, 0});
  text[0] = 0;
  return text;
}

BStr ResizeStringBlock(BStr text, std::size_t capacity) {
  const std::size_t secret = SecretUnits(text);
  if (secret != 0 && secret >= std::min(StringLength(text), capacity)) return MoveSecret(text, capacity);
  BStr moved = secret == 0 ? Reallocate(text, capacity) : ReallocateWithoutFront(text, capacity, secret);
  if (moved == nullptr) _com_raise_error(E_OUTOFMEMORY);
  return moved;
}

BStr TrimStringBlock(BStr text, std::size_t capacity) noexcept {
  if (StringLength(text) == capacity) return text;
  BStr trimmed = Reallocate(text, StringLength(text));
  return trimmed == nullptr ? text : trimmed;
}

void SetStringLength(BStr text, std::size_t length) noexcept {
  HeaderOf(text)->length = length;
  text[length] = 0;
}

char16_t* ShareString(char16_t* text) noexcept {
  if (text != nullptr) HeaderOf(text)->owners.fetch_add(1, std::memory_order_relaxed);
  return text;
}

bool IsShared(const char16_t* text) noexcept {
  return text != nullptr && HeaderOf(text)->owners.load(std::memory_order_acquire) > 1;
}

void MarkSecret(const char16_t* text) noexcept {
  if (text != nullptr) HeaderOf(text)->secretUnits.store(kAllUnits, std::memory_order_relaxed);
}

void MarkSecretFront(const char16_t* text, std::size_t units) noexcept {
  const auto marked = static_cast<std::uint32_t>(std::min<std::size_t>(units, kAllUnits));
  HeaderOf(text)->secretUnits.store(marked, std::memory_order_relaxed);
}

bool IsSecret(const char16_t* text) noexcept {
  return text != nullptr && HeaderOf(text)->secretUnits.load(std::memory_order_relaxed) != 0;
}

BStr AllocString(const char16_t* units, std::size_t length) noexcept {
  try {
    BStr text = NewStringBlock(length);
    if (units != nullptr && length != 0) std::memcpy(text, units, length * sizeof(char16_t));
    if (units == nullptr) std::memset(text, 0, length * sizeof(char16_t));
    SetStringLength(text, length);
    return text;
  } catch (const _com_error&) {
    return nullptr;
  }
}

void FreeString(BStr text) noexcept {
  if (text == nullptr) return;
  Header* header = HeaderOf(text);
  // A single owner needs no atomic decrement: no other thread can add one.
  if (header->owners.load(std::memory_order_acquire) == 1 ||
      header->owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
    FreeBlock(header);
}

std::size_t StringLength(const char16_t* text) noexcept {
  return text == nullptr ? 0 : HeaderOf(text)->length;
}

bool ReplaceString(BStr* text, std::u16string_view value) noexcept {
  static const char16_t kNothing[1] = {};
  BStr fresh = AllocString(value.empty() ? kNothing : value.data(), value.size());
  if (fresh == nullptr) return false;
  if (IsSecret(*text)) MarkSecret(fresh);
  FreeString(*text);
  *text = fresh;
  return true;
}

WideString::WideString(const char16_t* text) {
  if (text != nullptr) *this = WideString(std::u16string_view(text));
}

WideString::WideString(std::u16string_view text) : text_(NewStringBlock(text.size())) {
  if (!text.empty()) std::memcpy(text_, text.data(), text.size() * sizeof(char16_t));
  SetStringLength(text_, text.size());
}

WideString::WideString(const WideString& other) noexcept : text_(ShareString(other.text_)) {}

WideString& WideString::operator=(const WideString& other) noexcept {
  if (this == &other) return *this;
  char16_t* old = std::exchange(text_, ShareString(other.text_));
  if (old != nullptr) FreeString(old);
  return *this;
}

WideString& WideString::operator=(WideString&& other) noexcept {
  std::swap(text_, other.text_);
  return *this;
}

WideString WideString::Attach(BStr text) noexcept {
  WideString result;
  result.text_ = text;
  return result;
}

BStr WideString::Detach() {
  if (IsShared(text_)) {
    WideString copy(view());
    if (IsSecret(text_)) MarkSecret(copy);
    *this = std::move(copy);
  }
  return std::exchange(text_, nullptr);
}

}  // namespace qv
