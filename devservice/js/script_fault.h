// The fault that a script ends with.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <string>

#include "devservice/values/script_job.h"

namespace qv::devservice {

// Characters of the description that XML cannot carry become U+FFFD.
ScriptResult MakeFault(int code, const std::string& description);

// The fault that a thrown value makes. May run getters of the script.
ScriptResult ResultOfException(JSContextRef context, JSValueRef exception);

}  // namespace qv::devservice
