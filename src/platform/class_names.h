// Where the registry keeps what it knows about classes. Any thread.
#pragma once

#include <string>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// "SOFTWARE\Classes\CLSID\{...}\InprocServer32" for the class and "InprocServer32".
WideString ClassKey(const Guid& classId, const WideString& below);

// "; FILE: REASON" for each file of the registry that is damaged, and so counts as absent.
std::string RegistryDamage();

}  // namespace qv
