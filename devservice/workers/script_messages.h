// The JSON forms of what service and worker send each other.
#pragma once

#include <nlohmann/json.hpp>

#include "devservice/values/console_message.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

nlohmann::json ToJson(const ScriptJob& job);
nlohmann::json ToJson(const ConsoleMessage& message);
nlohmann::json ToJson(const ScriptResult& result);

// Whether this is a console message, which the worker sends before the result.
bool IsConsoleMessage(const nlohmann::json& message);

// All throw nlohmann::json::exception when the message has another form. JobFromJson moves the texts, since
// they can be large.
ScriptJob JobFromJson(nlohmann::json message);
ScriptResult ResultFromJson(const nlohmann::json& message);
ConsoleMessage ConsoleFromJson(const nlohmann::json& message);

}  // namespace qv::devservice
