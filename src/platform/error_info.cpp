#include "qvscriptwells/error_info.h"

#include <memory>
#include <new>

#include "platform/module_hooks.h"
#include "platform/thread_slot.h"

namespace qv {
namespace {

void DropRecord(void* record) {
  delete static_cast<ErrorInfo*>(record);
}

ThreadSlot& Slot() noexcept {
  static ThreadSlot slot(&DropRecord);
  return slot;
}

// Null when none waits.
ErrorInfo* Waiting() noexcept {
  return static_cast<ErrorInfo*>(Slot().Get());
}

std::unique_ptr<ErrorInfo> TakeWaiting() noexcept {
  std::unique_ptr<ErrorInfo> record(Waiting());
  Slot().Set(nullptr);
  return record;
}

}  // namespace

void SetErrorInfo(const ErrorInfo& info) noexcept {
  if (const ModuleHooks* const host = Host()) return host->setErrorInfo(info);
  std::unique_ptr<ErrorInfo> fresh(new (std::nothrow) ErrorInfo(info));
  const std::unique_ptr<ErrorInfo> old = TakeWaiting();
  if (Slot().Set(fresh.get())) static_cast<void>(fresh.release());
}

bool GetErrorInfo(ErrorInfo* info) noexcept {
  if (const ModuleHooks* const host = Host()) return host->getErrorInfo(info);
  const std::unique_ptr<ErrorInfo> record = TakeWaiting();
  if (record != nullptr) *info = *record;
  return record != nullptr;
}

void ClearErrorInfo() noexcept {
  if (const ModuleHooks* const host = Host()) return host->clearErrorInfo();
  if (Waiting() != nullptr) TakeWaiting();
}

}  // namespace qv
