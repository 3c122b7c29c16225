// What a worker is asked to do and what comes of it, with their JSON forms.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "devservice/soap_request.h"

namespace qv::devservice {

// One script with its parameters.
struct ScriptJob {
  std::string code;
  std::vector<Parameter> parameters;
};

enum class ResultKind { kValue, kNull, kNothing, kFault };

// What a script came to: a value (`type` names a row of the type table, `text` is its text, unescaped), null,
// nothing at all (undefined), or a fault. `source` is the place in the script as far as it is known.
struct ScriptResult {
  ResultKind kind = ResultKind::kNothing;
  std::string type;
  std::string text;
  int code = 0;
  std::string source;
};

nlohmann::json ToJson(const ScriptJob& job);
nlohmann::json ToJson(const ScriptResult& result);

// Both throw nlohmann::json::exception when the message has another form. The job takes the texts out of the
// message, since they can be large.
ScriptJob JobFromJson(nlohmann::json message);
ScriptResult ResultFromJson(const nlohmann::json& message);

}  // namespace qv::devservice
