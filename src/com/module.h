// What keeps the library loaded: the objects that hosts hold, and locks of class factories. Any thread.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"

namespace qv {

void LockModule() noexcept;
void UnlockModule() noexcept;
std::int32_t ModuleLocks() noexcept;

// The absolute path of the file that this code was loaded from; null when the system does not tell, or when
// no text leads back to it. Throws `_com_error`, E_OUTOFMEMORY.
WideString ModulePath();

// The first member of every object that a host can hold on to, so that it goes last: members that hold
// objects of the host call it when they go, and it may ask for unloading then.
class ModuleLock {
 public:
  ModuleLock() noexcept { LockModule(); }
  ~ModuleLock() { UnlockModule(); }
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
};

}  // namespace qv
