#include "torture/memory_gate.h"

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
extern char** environ;
}

namespace qv::torture {
namespace {

struct State {
  bool armed = false;
  bool onwards = false;
  long at = kNever;
  long seen = 0;
};

thread_local State state;
std::atomic<long> liveBlocks{0};

// Before main there is no thread but one, and nothing may be constructed yet.
bool startSettled = false;

// getenv without anything that allocates or needs a constructor.
const char* Variable(const char* name) noexcept {
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const char* text = *entry;
    const char* wanted = name;
    while (*wanted != '\0' && *text == *wanted) ++text, ++wanted;
    if (*wanted == '\0' && *text == '=') return text + 1;
  }
  return nullptr;
}

void SettleStart() noexcept {
  startSettled = true;
  const char* at = Variable("QV_REFUSE_MEMORY_AT");
  if (at == nullptr) return;
  state.at = std::strtol(at, nullptr, 10);
  state.onwards = Variable("QV_REFUSE_MEMORY_ONWARDS") != nullptr;
  state.armed = true;
}

bool Refused() noexcept {
  if (!startSettled && environ != nullptr) SettleStart();
  if (!state.armed) return false;
  const long number = ++state.seen;
  return number == state.at || (state.onwards && number > state.at);
}

void* Counted(void* block) noexcept {
  if (block != nullptr) liveBlocks.fetch_add(1, std::memory_order_relaxed);
  return block;
}

void* OutOfMemory() noexcept {
  errno = ENOMEM;
  return nullptr;
}

}  // namespace

void MemoryGate::Arm(const Refusal& refusal) noexcept {
  state = {true, refusal.onwards, refusal.at, 0};
}

long MemoryGate::Disarm() noexcept {
  state.armed = false;
  return state.seen;
}

long LiveBlocks() noexcept {
  return liveBlocks.load(std::memory_order_relaxed);
}

long EndRefusalOfProcessStart() noexcept {
  state.armed = false;
  return state.seen;
}

}  // namespace qv::torture

using qv::torture::Counted;
using qv::torture::OutOfMemory;
using qv::torture::Refused;

// Programs hide what they define; these are for every library in the process.
#pragma GCC visibility push(default)

extern "C" {

void* malloc(std::size_t size) {
  return Refused() ? OutOfMemory() : Counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
  return Refused() ? OutOfMemory() : Counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) {
  if (size != 0 && Refused()) return OutOfMemory();
  void* grown = __libc_realloc(block, size);
  if (block == nullptr) return Counted(grown);
  if (size == 0) qv::torture::liveBlocks.fetch_sub(1, std::memory_order_relaxed);
  return grown;
}

void free(void* block) {
  if (block != nullptr) qv::torture::liveBlocks.fetch_sub(1, std::memory_order_relaxed);
  __libc_free(block);
}

void* memalign(std::size_t alignment, std::size_t size) {
  return Refused() ? OutOfMemory() : Counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}

// Where the C library has no memory to remember the destructor of a thread_local it ends the process, so
// nothing is refused to it in there (docs/hosts.md says so).
int __cxa_thread_atexit_impl(void (*destructor)(void*), void* object, void* module) {
  using Function = int (*)(void (*)(void*), void*, void*);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "__cxa_thread_atexit_impl"));
  const bool armed = qv::torture::state.armed;
  qv::torture::state.armed = false;
  const int result = real(destructor, object, module);
  qv::torture::state.armed = armed;
  return result;
}

int posix_memalign(void** place, std::size_t alignment, std::size_t size) {
  void* block = memalign(alignment, size);
  if (block == nullptr) return ENOMEM;
  *place = block;
  return 0;
}

}  // extern "C"

#pragma GCC visibility pop
