// Values between the wire and a script: parameters in, typed values and answers out.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <memory>

#include "devservice/console_message.h"
#include "devservice/js_keys.h"
#include "devservice/script_job.h"
#include "devservice/worker_files.h"

namespace qv::devservice {

// Puts `parameters`, `parameterTypes`, `parameterList`, `typed`, `uploadUrl`, `publish`, `ScriptError` and a
// console that speaks into a fresh global object. The readers are borrowed and have to outlive the context;
// `files` and `console` are kept as long as a function needs them.
void InstallScriptApi(JSGlobalContextRef context, const ScriptJob& job, const ValueReaders& readers,
                      const std::shared_ptr<WorkerFiles>& files,
                      const std::shared_ptr<ConsoleLimit>& console);

// The answer that a script's value makes, a fault when the value has no wire form. May run getters of the
// script.
ScriptResult ResultOfValue(JSContextRef context, JSValueRef value, const ValueReaders& readers);

// The same for a value that has to be a single one: a table and an array are faults too.
ScriptResult ResultOfSingle(JSContextRef context, JSValueRef value, const DateReader& dates);

// The fault that a thrown value makes. May run getters of the script.
ScriptResult ResultOfException(JSContextRef context, JSValueRef exception);

}  // namespace qv::devservice
