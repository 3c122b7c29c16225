// Lets a program share its error record per thread and its table of class creators with the class libraries
// that it loads, though each library has its own platform layer. The program passes this struct to `DllMain`
// of the library, whose platform layer then forwards the calls. Any thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/error_info.h"

namespace qv {

// Increment whenever the struct or one of its types changes; a library rejects any number but its own.
constexpr std::uint32_t kModuleHooksVersion = 1;

using ClassObjectGetter = HRESULT (*)(const Guid& classId, std::uint32_t context, const Guid& iid,
                                      void** object) noexcept;

struct ModuleHooks {
  std::uint32_t version;
  void (*setErrorInfo)(const ErrorInfo& info) noexcept;
  bool (*getErrorInfo)(ErrorInfo* info) noexcept;
  void (*clearErrorInfo)() noexcept;
  ClassCreator (*findClassCreator)(const Guid& classId) noexcept;
  ClassObjectGetter getClassObject;
  void (*freeUnusedLibraries)() noexcept;
};

// The hooks of this program. Valid as long as the program runs.
const ModuleHooks* OwnHooks() noexcept;

// Sets the host's `hooks` for this library; null for a host that shares nothing. The first host's hooks stay
// until it detaches; a second host in the same process does not replace them. False for another version.
bool AttachHost(const ModuleHooks* hooks) noexcept;
// Detaches these hooks; does nothing for others.
void DetachHost(const ModuleHooks* hooks) noexcept;
// Null if there is none. Inline, since every operation calls it first.
extern std::atomic<const ModuleHooks*> hostOfThisModule;
inline const ModuleHooks* Host() noexcept {
  return hostOfThisModule.load(std::memory_order_acquire);
}

// The creator that CoCreateInstance uses, of this module or else of its host; null for none. A host's
// registered creators take precedence over this module's, so that the library uses the host's components.
ClassCreator FindClassCreator(const Guid& classId) noexcept;

}  // namespace qv
