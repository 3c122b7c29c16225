#include "com/module.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>

namespace qv {
namespace {

std::atomic<std::int32_t> locks{0};

// The system may return a program's own path as it was typed.
std::string AbsolutePath(const char* path) {
  if (*path == '/') return path;
  const std::unique_ptr<char, void (*)(void*)> real(realpath(path, nullptr), std::free);
  return real == nullptr ? std::string() : std::string(real.get());
}

}  // namespace

void LockModule() noexcept {
  ++locks;
}

void UnlockModule() noexcept {
  --locks;
}

std::int32_t ModuleLocks() noexcept {
  return locks;
}

WideString ModulePath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&LockModule), &info) == 0 || info.dli_fname == nullptr) return {};
  const std::string path = AbsolutePath(info.dli_fname);
  const WideString wide = FromUtf8(path);
  return path.empty() || ToUtf8(wide) != path ? WideString() : wide;
}

}  // namespace qv
