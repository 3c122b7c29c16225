// How class objects make the client object, the one class that can be created from outside.
#pragma once

#include "qvscriptwells/unknown.h"

namespace qv {

// Creates one and returns `iid` of it. With `outer` the object is a part of that one (aggregation), which
// asks for IUnknown and owns what it gets. E_POINTER, E_OUTOFMEMORY, E_NOINTERFACE; CLASS_E_NOAGGREGATION for
// an `outer` that asks for another interface.
HRESULT CreateQvScriptwellsObject(IUnknown* outer, const Guid& iid, void** object) noexcept;

}  // namespace qv
