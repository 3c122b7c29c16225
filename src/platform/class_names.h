// Where the registry keeps what it knows about classes. Any thread.
#pragma once

#include "qvscriptwells/guid.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// "SOFTWARE\Classes\CLSID\{...}\InprocServer32" for the class and "InprocServer32".
WideString ClassKey(const Guid& classId, const WideString& below);

}  // namespace qv
