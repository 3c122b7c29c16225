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

// The count of such an object; plain, for one thread.
class ReferenceCount {
 public:
  std::uint32_t Add() noexcept { return ++count_; }
  // The references that are left. 0 is the word to delete the object, and is said once: a host that is called
  // while the object goes may take and return references to it still.
  std::uint32_t Drop() noexcept {
    const std::uint32_t left = --count_;
    if (left == 0) count_ = kEnding;
    return left;
  }

 private:
  static constexpr std::uint32_t kEnding = 0x40000000;
  std::uint32_t count_ = 0;
};

}  // namespace qv
