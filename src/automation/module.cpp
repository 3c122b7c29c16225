#include "automation/module.h"

#include <atomic>

namespace qv {
namespace {

std::atomic<std::int32_t> locks{0};

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

}  // namespace qv
