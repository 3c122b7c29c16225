// The parameters of a script.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <vector>

#include "devservice/soap_request.h"

namespace qv::devservice {

// Puts `parameters`, `parameterTypes` and `parameterList` into a global object.
void InstallParameters(JSContextRef context, JSObjectRef global, const std::vector<Parameter>& parameters);

}  // namespace qv::devservice
