// The registry's entries about classes. Any thread.
#pragma once

#include <string>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// "SOFTWARE\Classes\CLSID\{...}\InprocServer32" for the class and "InprocServer32".
WideString ClassKey(const Guid& classId, const WideString& below);

// For the message of a class that is not found: the searched files with the problem of each ("not there", or
// the damage), and the variable that names another file. Begins with "; ".
std::string SearchedRegistry();

}  // namespace qv
