#include "tools/page/call_request.h"

#include <nlohmann/json.hpp>

#include "tools/page/page_error.h"
#include "tools/report/json_text.h"

namespace qv::cli {

namespace {

using Json = nlohmann::json;

// The library counts parameters in 16 bits.
constexpr std::size_t kMostParameters = 32767;
constexpr std::size_t kLongestRunName = 100;

[[noreturn]] void Refuse(const std::string& reason) {
  throw PageError(400, reason);
}

Json ObjectIn(std::string_view text) {
  Json object = Json::parse(text, nullptr, false);
  if (!object.is_object()) Refuse("The request is not a JSON object.");
  return object;
}

std::string TextAt(const Json& object, const char* key, const char* otherwise = "") {
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return otherwise;
  if (!found->is_string()) Refuse(std::string("\"") + key + "\" is not a text.");
  return found->get<std::string>();
}

int NumberAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return 0;
  if (!found->is_number_integer() || *found < 0 || *found > 1000000000)
    Refuse(std::string("\"") + key + "\" is not a number of the page.");
  return found->get<int>();
}

PageParameter ParameterIn(const Json& object) {
  if (!object.is_object()) Refuse("A parameter is not a JSON object.");
  return {TextAt(object, "name"), TextAt(object, "type"), TextAt(object, "value"), NumberAt(object, "file")};
}

}  // namespace

CallRequest ParseCallRequest(std::string_view text) {
  const Json object = ObjectIn(text);
  CallRequest request;
  request.session = NumberAt(object, "session");
  request.run = TextAt(object, "run");
  if (request.run.size() > kLongestRunName) Refuse("The name of the run is too long.");
  request.script.code = TextAt(object, "code");
  request.script.language = TextAt(object, "language", "JavaScript");
  // Not a copy: that takes stack for each level, and a body may have millions.
  const auto parameters = object.find("parameters");
  if (parameters == object.end()) return request;
  if (!parameters->is_array()) Refuse("\"parameters\" is not an array.");
  if (parameters->size() > kMostParameters) Refuse("There are more than 32767 parameters.");
  for (const Json& parameter : *parameters) request.script.parameters.push_back(ParameterIn(parameter));
  return request;
}

std::string ScriptJson(const PageScript& script) {
  nlohmann::ordered_json whole = {{"code", script.code}, {"language", script.language}};
  whole["parameters"] = nlohmann::ordered_json::array();
  for (const PageParameter& parameter : script.parameters) {
    nlohmann::ordered_json row = {{"name", parameter.name}, {"type", parameter.type}};
    if (parameter.file != 0)
      row["file"] = parameter.file;
    else
      row["value"] = parameter.value;
    whole["parameters"].push_back(std::move(row));
  }
  return JsonText(whole);
}

std::string TextIn(std::string_view json, const char* key) {
  return TextAt(ObjectIn(json), key);
}

}  // namespace qv::cli
