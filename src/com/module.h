// Counts what keeps the library loaded: objects of hosts, and locks of class factories. Any thread.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"

namespace qv {

void LockModule() noexcept;
void UnlockModule() noexcept;
std::int32_t ModuleLocks() noexcept;

// The absolute path of the file that this code was loaded from; null if the system does not know it, or if it
// cannot be converted to text and back. Throws `_com_error`, E_OUTOFMEMORY.
WideString ModulePath();

// The first member of every object that a host can hold, so that it is destroyed last: other members may
// release objects of the host, which may then ask to unload the library.
class ModuleLock {
 public:
  ModuleLock() noexcept { LockModule(); }
  ~ModuleLock() { UnlockModule(); }
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
};

}  // namespace qv
