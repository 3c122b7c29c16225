// The library's entries in the registry. Any thread, as far as the registry allows (registry.h).
#pragma once

#include <vector>

#include "qvscriptwells/registry.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// What is written for a library at `path`: the application id, the two names of the class, the class.
std::vector<RegistryValue> ClassEntries(const WideString& path);

// Write all entries with this library's own path, or take them out again; the key that other applications'
// ids stand in stays. A failure gives the registry's code and leaves an error record with its words.
HRESULT RegisterClasses() noexcept;
HRESULT UnregisterClasses() noexcept;

// Called at the end of both when set: `adding` tells which. Its result is theirs. Null for none, which is how
// it starts.
using RegistrationFollowUp = HRESULT (*)(bool adding) noexcept;
void SetRegistrationFollowUp(RegistrationFollowUp followUp) noexcept;

}  // namespace qv
