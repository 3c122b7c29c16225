#include "system/thread_slot.h"

namespace qv {

ThreadSlot::ThreadSlot(Drop drop) noexcept : drop_(drop), usable_(pthread_key_create(&key_, drop) == 0) {}

ThreadSlot::~ThreadSlot() {
  void* const own = Get();
  if (usable_.exchange(false)) pthread_key_delete(key_);
  if (own != nullptr) drop_(own);
}

void* ThreadSlot::Get() const noexcept {
  return usable_ ? pthread_getspecific(key_) : nullptr;
}

bool ThreadSlot::Set(void* value) noexcept {
  if (value == nullptr && Get() == nullptr) return true;
  return usable_ && pthread_setspecific(key_, value) == 0;
}

}  // namespace qv
