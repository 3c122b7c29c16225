// New identifiers, and the usual text of one.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// A random GUID (RFC 4122, version 4). E_FAIL, and all zero, when the system has no random bytes; E_POINTER.
HRESULT CoCreateGuid(Guid* id) noexcept;

// "{6F628F7A-B972-4929-83DA-C3C16AC0022F}": capitals, braces, 38 units.
WideString StringFromIID(const Guid& id);

}  // namespace qv
