#include "devservice/script_job.h"

namespace qv::devservice {
namespace {

std::string TakeText(nlohmann::json& object, const char* key) {
  return std::move(object.at(key).get_ref<std::string&>());
}

}  // namespace

nlohmann::json ToJson(const ScriptJob& job) {
  nlohmann::json parameters = nlohmann::json::array();
  for (const Parameter& parameter : job.parameters) {
    parameters.push_back({{"name", parameter.name}, {"type", parameter.type}, {"text", parameter.text}});
  }
  return {{"code", job.code}, {"parameters", std::move(parameters)}};
}

nlohmann::json ToJson(const ScriptResult& result) {
  return {{"kind", static_cast<int>(result.kind)},
          {"type", result.type},
          {"text", result.text},
          {"code", result.code},
          {"source", result.source}};
}

ScriptJob JobFromJson(nlohmann::json message) {
  ScriptJob job;
  job.code = TakeText(message, "code");
  for (nlohmann::json& item : message.at("parameters")) {
    job.parameters.push_back({TakeText(item, "name"), TakeText(item, "type"), TakeText(item, "text")});
  }
  return job;
}

ScriptResult ResultFromJson(const nlohmann::json& message) {
  ScriptResult result;
  result.kind = static_cast<ResultKind>(message.at("kind").get<int>());
  result.type = message.at("type").get<std::string>();
  result.text = message.at("text").get<std::string>();
  result.code = message.at("code").get<int>();
  result.source = message.at("source").get<std::string>();
  return result;
}

}  // namespace qv::devservice
