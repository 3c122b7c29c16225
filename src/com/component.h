// How the library gets the components that it stands on.
#pragma once

#include "qvscriptwells/unknown.h"

namespace qv {

// A new object of the class behind `classId`, started (OleRun). Throws `_com_error`, without words, when it
// cannot be made or started.
IUnknownPtr CreateComponent(const Guid& classId);

}  // namespace qv
