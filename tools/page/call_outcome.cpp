#include "tools/page/call_outcome.h"

#include <nlohmann/json.hpp>

#include "tools/output/answer_format.h"
#include "tools/output/table_output.h"
#include "tools/report/json_text.h"

namespace qv::cli {

namespace {

using Json = nlohmann::ordered_json;

// The text of an object, with another member at its end.
std::string With(std::string object, const std::string& member) {
  object.pop_back();
  return object + "," + member + "}";
}

std::string FileUrlJson(const CallOutcome& outcome) {
  const Json url = {
      {"type", "url"}, {"value", outcome.value->ToString()}, {"caption", ""}, {"file", outcome.file}};
  return JsonText(url);
}

std::string ValueJson(const CallOutcome& outcome) {
  const scriptwells::Value& value = *outcome.value;
  if (value.type() == scriptwells::Type::kTable)
    return R"({"type":"table",)" + value.AsTable().ToJson().substr(1);
  if (outcome.file != 0) return FileUrlJson(outcome);
  std::string text = FormatAnswer(OutputFormat::kJson, value);
  text.pop_back();  // the line end
  return text;
}

std::string ErrorJson(const scriptwells::Error& error) {
  Json row = {{"message", error.message()}, {"phase", ToString(error.phase())}};
  const scriptwells::ErrorDetails& details = error.details();
  if (details.number) row["code"] = *details.number;
  if (details.line > 0) row["line"] = details.line;
  if (details.column > 0) row["column"] = details.column;
  return JsonText(row);
}

std::vector<std::string> LossesIn(const scriptwells::Value& value) {
  return value.type() == scriptwells::Type::kTable ? LossesOf(value.AsTable()) : LossesOf(value);
}

}  // namespace

std::string OutcomeJson(const CallOutcome& outcome) {
  Json console = Json::array();
  for (const devservice::ConsoleMessage& message : outcome.console)
    console.push_back({{"level", message.level}, {"text", message.text}});
  Json notes = outcome.notes;
  if (outcome.value && outcome.file == 0)
    for (const std::string& loss : LossesIn(*outcome.value)) notes.push_back(loss);
  const Json whole = {
      {"milliseconds", outcome.milliseconds}, {"console", std::move(console)}, {"notes", std::move(notes)}};
  const std::string text = JsonText(whole);
  if (outcome.error) return With(text, R"("error":)" + ErrorJson(*outcome.error));
  return With(text, R"("value":)" + ValueJson(outcome));
}

}  // namespace qv::cli
