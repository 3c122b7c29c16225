// Where the registry keeps what it knows about classes. Any thread.
#pragma once

#include <string>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// "SOFTWARE\Classes\CLSID\{...}\InprocServer32" for the class and "InprocServer32".
WideString ClassKey(const Guid& classId, const WideString& below);

// For the message of a class that is not found: the files that were looked at, with what is wrong with each
// ("not there", or how it is damaged), and the variable that names another one. Begins with "; ".
std::string SearchedRegistry();

}  // namespace qv
