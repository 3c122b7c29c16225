// Values between the wire and a script: parameters in, typed values and answers out.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/script_job.h"

namespace qv::devservice {

// Puts `parameters`, `parameterTypes`, `parameterList`, `typed` and `ScriptError` into a fresh global object.
void InstallScriptApi(JSGlobalContextRef context, const ScriptJob& job);

// The answer that a script's value makes, a fault when the value has no wire form.
ScriptResult ResultOfValue(JSContextRef context, JSValueRef value);

// The fault that a thrown value makes. May run getters of the script.
ScriptResult ResultOfException(JSContextRef context, JSValueRef exception);

}  // namespace qv::devservice
