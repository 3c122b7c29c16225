// Paths that the library tells keep the backslash of the names that hosts know, such as
// "/tmp\6F628F7A-B972-4929-83DA-C3C16AC0022F". This makes one a path that the system opens.
#pragma once

#include <string>

#include "qvscriptwells/wide_string.h"

namespace qv {

// UTF-8, every "\" turned to "/". Nothing else changes. Any thread.
std::string NativePath(const WideString& fileName);

}  // namespace qv
