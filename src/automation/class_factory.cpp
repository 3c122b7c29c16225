#include "automation/class_factory.h"

#include "com/module.h"
#include "qvscriptwells/error_info.h"

namespace qv {

std::uint32_t ClassFactory::AddRef() noexcept {
  LockModule();
  return ++count_;
}

// Unlocks the library last.
std::uint32_t ClassFactory::Release() noexcept {
  const std::uint32_t left = --count_;
  UnlockModule();
  return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, const Guid& iid, void** object) noexcept {
  ClearErrorInfo();
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr && iid != IUnknown::kIid) return CLASS_E_NOAGGREGATION;
  return creator_(outer, iid, object);
}

HRESULT ClassFactory::LockServer(bool lock) noexcept {
  lock ? LockModule() : UnlockModule();
  return S_OK;
}

}  // namespace qv
