// Creates the client object, the only class that hosts can create by id.
#pragma once

#include "qvscriptwells/unknown.h"

namespace qv {

// Creates one and returns `iid` of it. With `outer` the object is aggregated by it; `outer` must ask for
// IUnknown and owns the result. E_POINTER, E_OUTOFMEMORY, E_NOINTERFACE; CLASS_E_NOAGGREGATION for an `outer`
// that asks for another interface.
HRESULT CreateQvScriptwellsObject(IUnknown* outer, const Guid& iid, void** object) noexcept;

}  // namespace qv
