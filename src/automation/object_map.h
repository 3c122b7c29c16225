// The classes that can be created from outside. Any thread.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// Hands out `iid` of the class object, which is made on first demand and kept. E_POINTER;
// CLASS_E_CLASSNOTAVAILABLE, and null, for a class that is not in the map; E_NOINTERFACE.
HRESULT FindClassObject(const Guid& classId, const Guid& iid, void** object) noexcept;

}  // namespace qv
