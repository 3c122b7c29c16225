// What a program shares with the class libraries that it loads: one error record per thread and one table of
// class creators, though each library carries a platform layer of its own. The program hands this struct to
// `DllMain` of the library, whose platform layer passes the calls on from then on. Any thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/error_info.h"

namespace qv {

// Grows whenever the struct or one of the types in it changes; a library refuses another number than its own.
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

// What this program offers. Lives as long as the program.
const ModuleHooks* OwnHooks() noexcept;

// Makes `hooks` those of the host of this library; null for a host that shares nothing. The first host stays
// until it detaches: to a second one in the same process the library then works as before. False for a
// version that is not ours.
bool AttachHost(const ModuleHooks* hooks) noexcept;
// Undoes the attaching of these very hooks; does nothing for others.
void DetachHost(const ModuleHooks* hooks) noexcept;
// Null when there is none. Asked at the start of every operation, hence in place.
extern std::atomic<const ModuleHooks*> hostOfThisModule;
inline const ModuleHooks* Host() noexcept {
  return hostOfThisModule.load(std::memory_order_acquire);
}

// The creator of this module or else of its host, as CoCreateInstance finds it; null for none. A host's own
// creators go before those of this module, so that its components serve the library too.
ClassCreator FindClassCreator(const Guid& classId) noexcept;

}  // namespace qv
