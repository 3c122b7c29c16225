#include "platform/module_hooks.h"

#include <atomic>

namespace qv {
namespace {

std::atomic<const ModuleHooks*> host{nullptr};

ClassCreator FindForLibrary(const Guid& classId) noexcept {
  try {
    return FindClassCreator(classId);
  } catch (...) {
    return nullptr;
  }
}

constexpr ModuleHooks kOwnHooks = {kModuleHooksVersion,   &SetErrorInfo,   &GetErrorInfo,
                                   &ClearErrorInfo,       &FindForLibrary, &CoGetClassObject,
                                   &CoFreeUnusedLibraries};

}  // namespace

const ModuleHooks* OwnHooks() noexcept {
  return &kOwnHooks;
}

bool AttachHost(const ModuleHooks* hooks) noexcept {
  if (hooks == nullptr) return true;
  if (hooks->version != kModuleHooksVersion) return false;
  const ModuleHooks* none = nullptr;
  host.compare_exchange_strong(none, hooks);
  return true;
}

void DetachHost(const ModuleHooks* hooks) noexcept {
  if (hooks != nullptr) host.compare_exchange_strong(hooks, nullptr);
}

const ModuleHooks* Host() noexcept {
  return host.load(std::memory_order_acquire);
}

}  // namespace qv
