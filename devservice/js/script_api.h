// The names that a script finds in its global object.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <memory>
#include <vector>

#include "devservice/files/worker_files.h"
#include "devservice/js/key_reader.h"
#include "devservice/values/console_message.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

// Puts `parameters`, `parameterTypes`, `parameterList`, `typed`, `uploadUrl`, `publish`, `ScriptError` and
// the functions of the console into a fresh global object. The readers are borrowed and have to outlive the
// context; `files` and `console` are kept as long as a function needs them.
void InstallScriptApi(JSGlobalContextRef context, const ScriptJob& job, const ValueReaders& readers,
                      const std::shared_ptr<WorkerFiles>& files,
                      const std::shared_ptr<ConsoleLimit>& console);

// The parts of it that are not `typed` (typed_values.h, typed_table.h).

// `parameters`, `parameterTypes` and `parameterList`. Every ticket among the parameters has its file in
// `files`.
void InstallParameters(JSContextRef context, JSObjectRef global, const std::vector<Parameter>& parameters,
                       const WorkerFiles& files);

// `uploadUrl` and `publish`, which return addresses of files. They keep `files` alive.
void InstallPublish(JSContextRef context, JSObjectRef global, const std::shared_ptr<WorkerFiles>& files);

// console.log, info, warn, error and debug pass on their arguments as texts, joined by blanks. The engine's
// other functions of the console stay and do nothing.
void InstallConsole(JSContextRef context, JSObjectRef global, const std::shared_ptr<ConsoleLimit>& console);

}  // namespace qv::devservice
