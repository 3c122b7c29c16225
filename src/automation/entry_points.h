// What the shared library exports, and nothing else does it export. The names and shapes are those by which
// COM knows such libraries. Failure: result codes. Any thread.
#pragma once

#include <cstdint>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"

extern "C" {

// The platform layer of a program calls this once when it has loaded the library, with `reason` 1 and, in
// `hooks`, a ModuleHooks (platform/module_hooks.h) or null; and with `reason` 0 and the same hooks before it
// unloads it. Nonzero for success; 0 when hooks of another version come, and the library is of no use then.
int DllMain(void* library, std::uint32_t reason, void* hooks) noexcept;

// S_OK when no object, class object or lock of the library is in use, otherwise S_FALSE.
qv::HRESULT DllCanUnloadNow() noexcept;

// Hands out `iid` of the class object. E_UNEXPECTED before DllMain; E_POINTER; CLASS_E_CLASSNOTAVAILABLE.
qv::HRESULT DllGetClassObject(const qv::Guid& classId, const qv::Guid& iid, void** object) noexcept;

// Write the class into the registry, with the path of this library, and take it out again. A failure leaves
// an error record with the reason.
qv::HRESULT DllRegisterServer() noexcept;
qv::HRESULT DllUnregisterServer() noexcept;
}
