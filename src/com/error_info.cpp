#include "qvscriptwells/error_info.h"

#include <new>
#include <utility>

#include "com/module_hooks.h"
#include "system/thread_slot.h"

namespace qv {
namespace {

// Storage of a thread's record. It has no destructor, so that its first use allocates no memory: a failure
// for lack of memory has a record too.
struct RecordPlace {
  bool waits = false;
  alignas(ErrorInfo) unsigned char bytes[sizeof(ErrorInfo)] = {};

  ErrorInfo& Record() noexcept { return *std::launder(reinterpret_cast<ErrorInfo*>(bytes)); }
};

[[gnu::tls_model("initial-exec")]] thread_local RecordPlace place;

void Drop(void* dropped) {
  RecordPlace& ended = *static_cast<RecordPlace*>(dropped);
  if (!std::exchange(ended.waits, false)) return;
  ended.Record().~ErrorInfo();
}

// Registers the storage that the thread library clears at the end of the thread.
ThreadSlot& Slot() noexcept {
  static ThreadSlot slot(&Drop);
  return slot;
}

}  // namespace

void SetErrorInfo(const ErrorInfo& info) noexcept {
  if (const ModuleHooks* const host = Host()) return host->setErrorInfo(info);
  const ErrorInfo kept(info);  // which may be part of the old record
  Drop(&place);
  new (place.bytes) ErrorInfo(kept);
  place.waits = true;
  Slot().Set(&place);  // without memory for it, the texts of an untaken record leak at the end of the thread
}

bool GetErrorInfo(ErrorInfo* info) noexcept {
  if (const ModuleHooks* const host = Host()) return host->getErrorInfo(info);
  if (!place.waits) return false;
  *info = place.Record();
  Drop(&place);
  return true;
}

void ClearErrorInfo() noexcept {
  if (const ModuleHooks* const host = Host()) return host->clearErrorInfo();
  Drop(&place);
}

}  // namespace qv
