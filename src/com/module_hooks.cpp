#include "com/module_hooks.h"

namespace qv {

std::atomic<const ModuleHooks*> hostOfThisModule{nullptr};

namespace {

constexpr ModuleHooks kOwnHooks = {kModuleHooksVersion,   &SetErrorInfo,     &GetErrorInfo,
                                   &ClearErrorInfo,       &FindClassCreator, &CoGetClassObject,
                                   &CoFreeUnusedLibraries};

}  // namespace

const ModuleHooks* OwnHooks() noexcept {
  return &kOwnHooks;
}

bool AttachHost(const ModuleHooks* hooks) noexcept {
  if (hooks == nullptr) return true;
  if (hooks->version != kModuleHooksVersion) return false;
  const ModuleHooks* none = nullptr;
  hostOfThisModule.compare_exchange_strong(none, hooks);
  return true;
}

void DetachHost(const ModuleHooks* hooks) noexcept {
  if (hooks != nullptr) hostOfThisModule.compare_exchange_strong(hooks, nullptr);
}

}  // namespace qv
