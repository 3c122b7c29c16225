// The parameters of a script.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <vector>

#include "devservice/soap_request.h"
#include "devservice/worker_files.h"

namespace qv::devservice {

// Puts `parameters`, `parameterTypes` and `parameterList` into a global object. Every ticket among the
// parameters has its file in `files`.
void InstallParameters(JSContextRef context, JSObjectRef global, const std::vector<Parameter>& parameters,
                       const WorkerFiles& files);

}  // namespace qv::devservice
