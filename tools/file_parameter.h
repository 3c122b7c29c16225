// Files as parameters: the library uploads them while a call is written.
#pragma once

#include <string>

#include "qvscriptwells/variant.h"

namespace qv::cli {

// An attached file with the absolute path of `file`. Throws Failure (kLocal) with the reason alone for one
// that is not there, cannot be read or is not regular, and for a path with "\", which the library takes for
// "/".
Variant MakeFileParameter(const std::string& file);

bool IsFileParameter(const Variant& value);

}  // namespace qv::cli
