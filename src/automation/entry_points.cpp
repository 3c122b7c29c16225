#include "automation/entry_points.h"

#include <atomic>

#include "automation/module_xml_hold.h"
#include "automation/registration.h"
#include "com/builtin_classes.h"
#include "com/module.h"
#include "com/module_hooks.h"

namespace {

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::uint32_t kProcessAttach = 1;

std::atomic<bool> started{false};

}  // namespace

// All other symbols of the library are hidden.
#pragma GCC visibility push(default)

extern "C" int DllMain(void*, std::uint32_t reason, void* hooks) noexcept {
  const auto* const host = static_cast<const qv::ModuleHooks*>(hooks);
  if (reason == kProcessDetach) {
    qv::DropXmlLibraryHold();
    qv::DetachHost(host);
  }
  if (reason != kProcessAttach) return 1;
  if (!qv::AttachHost(host)) return 0;
  started = true;
  return 1;
}

extern "C" qv::HRESULT DllCanUnloadNow() noexcept {
  return qv::ModuleLocks() == 0 ? qv::S_OK : qv::S_FALSE;
}

extern "C" qv::HRESULT DllGetClassObject(const qv::Guid& classId, const qv::Guid& iid,
                                         void** object) noexcept {
  if (!started) return qv::E_UNEXPECTED;
  qv::HoldXmlLibraryIfAsked();
  return qv::OwnClassObject(classId, iid, object);
}

extern "C" qv::HRESULT DllRegisterServer() noexcept {
  return qv::RegisterClasses();
}

extern "C" qv::HRESULT DllUnregisterServer() noexcept {
  return qv::UnregisterClasses();
}

#pragma GCC visibility pop
