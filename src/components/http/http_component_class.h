// The class behind CLSID_HttpComponent.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// A ClassCreator (class_registry.h): makes a session that is not open and hands out `iid` of it.
HRESULT CreateHttpComponent(const Guid& iid, void** object);

}  // namespace qv
