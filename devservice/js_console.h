// The console of a script.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <memory>

#include "devservice/console_message.h"

namespace qv::devservice {

// Lets console.log, info, warn, error and debug of a fresh global object pass their arguments on as texts,
// joined by blanks. The engine's other functions of the console stay and say nothing.
void InstallConsole(JSContextRef context, JSObjectRef global, const std::shared_ptr<ConsoleLimit>& console);

}  // namespace qv::devservice
