// All exports of the shared library. Names and signatures are those of COM class libraries. Failure: result
// codes. Any thread.
#pragma once

#include <cstdint>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"

extern "C" {

// The program's platform layer calls this with `reason` 1 after loading the library and with `reason` 0
// before unloading it. `hooks` is a ModuleHooks (com/module_hooks.h) or null, the same in both calls. Nonzero
// for success; 0 for hooks of another version, and then the library is unusable.
int DllMain(void* library, std::uint32_t reason, void* hooks) noexcept;

// S_OK when no object, class object or lock of the library is in use, otherwise S_FALSE.
qv::HRESULT DllCanUnloadNow() noexcept;

// Returns `iid` of the class object. E_UNEXPECTED before DllMain; E_POINTER; CLASS_E_CLASSNOTAVAILABLE.
qv::HRESULT DllGetClassObject(const qv::Guid& classId, const qv::Guid& iid, void** object) noexcept;

// Register the class, with the path of this library, in the registry, and unregister it. A failure leaves an
// error record with the reason.
qv::HRESULT DllRegisterServer() noexcept;
qv::HRESULT DllUnregisterServer() noexcept;
}
