// The answer that one value of a script makes.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/js/date_reader.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

// For a value that is neither a table nor an array. A fault when the value has no form in an answer. May run
// getters of the script.
ScriptResult ResultOfSingle(JSContextRef context, JSValueRef value, const DateReader& dates);

}  // namespace qv::devservice
