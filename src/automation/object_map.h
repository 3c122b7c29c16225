// The classes that hosts can create by id. Any thread.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// Returns `iid` of the class object, which is created on first use and kept. E_POINTER;
// CLASS_E_CLASSNOTAVAILABLE, and null, for a class that is not in the map; E_NOINTERFACE.
HRESULT FindClassObject(const Guid& classId, const Guid& iid, void** object) noexcept;

}  // namespace qv
