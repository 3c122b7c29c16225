// What a call sets for its thread in the library below.
#pragma once

#include "components/http/wire_tap.h"
#include "support/path_helpers.h"

namespace scriptwells {

// Sets both for the life of the object; then what was there before returns. Both are borrowed and may be
// null.
class ThreadHooks {
 public:
  ThreadHooks(qv::WireTap* tap, const qv::WideString* home) noexcept
      : tap_(qv::SetThreadWireTap(tap)), home_(qv::SetThreadHomeDirectory(home)) {}
  ~ThreadHooks() {
    qv::SetThreadWireTap(tap_);
    qv::SetThreadHomeDirectory(home_);
  }
  ThreadHooks(const ThreadHooks&) = delete;
  ThreadHooks& operator=(const ThreadHooks&) = delete;

 private:
  qv::WireTap* tap_;
  const qv::WideString* home_;
};

}  // namespace scriptwells
