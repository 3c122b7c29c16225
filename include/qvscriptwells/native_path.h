// SPDX-License-Identifier: Apache-2.0
// Paths that the library returns contain the backslash that hosts expect, such as
// "/tmp\6F628F7A-B972-4929-83DA-C3C16AC0022F". NativePath converts one to a path that the system can open.
#pragma once

#include <string>

#include "qvscriptwells/wide_string.h"

namespace qv {

// UTF-8, with every "\" replaced by "/". Nothing else changes. Any thread.
std::string NativePath(const WideString& fileName);

}  // namespace qv
