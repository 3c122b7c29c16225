// The library's entries in the registry. Threads: as registry.h says.
#pragma once

#include <vector>

#include "qvscriptwells/registry.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// The entries for a library at `path`: the application id, the two names of the class, the class.
std::vector<RegistryValue> ClassEntries(const WideString& path);

// Write all entries with this library's own path, or remove them. The parent key of all application ids
// stays. A failure returns the registry's code and leaves an error record with its message.
HRESULT RegisterClasses() noexcept;
HRESULT UnregisterClasses() noexcept;

// If set, both functions call this at their end and return its result; `adding` says which one. Null at
// first.
using RegistrationFollowUp = HRESULT (*)(bool adding) noexcept;
void SetRegistrationFollowUp(RegistrationFollowUp followUp) noexcept;

}  // namespace qv
