// What keeps the library loaded: the objects that hosts hold, and locks of class factories. Any thread.
#pragma once

#include <cstdint>

namespace qv {

void LockModule() noexcept;
void UnlockModule() noexcept;
std::int32_t ModuleLocks() noexcept;

// A member of every object that a host can hold.
class ModuleLock {
 public:
  ModuleLock() noexcept { LockModule(); }
  ~ModuleLock() { UnlockModule(); }
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
};

}  // namespace qv
