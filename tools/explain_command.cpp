#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/commands.h"
#include "tools/input/input_text.h"
#include "tools/inspect/check_report.h"
#include "tools/inspect/explained_message.h"
#include "tools/report/json_text.h"
#include "tools/report/standard_output.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestText = 2000;

struct ReadAsRow {
  ReadAs result;
  const char* name;  // in JSON
  const char* sentence;
};
constexpr ReadAsRow kResults[] = {
    {ReadAs::kValue, "value", "A client reads this answer"},
    {ReadAs::kNothing, "nothing", "A client gets no value from this answer"},
    {ReadAs::kFault, "fault", "A client reads this fault"},
    {ReadAs::kRefused, "refused", "A client refuses this answer"},
    {ReadAs::kFile, "file", "A client saves a file from this answer, or has sent one"},
};

const ReadAsRow& ReadAsRowOf(const ClientReading& reading) {
  return *std::find_if(std::begin(kResults), std::end(kResults),
                       [&](const ReadAsRow& row) { return row.result == reading.result; });
}

const char* LimitOf(const std::vector<ShownFinding>& findings) {
  if (findings.empty()) return "";
  const bool isLoss = std::all_of(findings.begin(), findings.end(),
                                  [](const ShownFinding& finding) { return RowOf(finding.rule).isLoss; });
  return isLoss ? ", but not all of it" : ", although it breaks a rule";
}

// The sentence at the end, and what the client gets.
std::string VerdictOf(const ExplainedMessage& explained) {
  if (!explained.reading) return "A client sends such a request.\n";
  const ClientReading& reading = *explained.reading;
  const bool hasAnswer = !explained.lines.empty();
  std::string text = hasAnswer ? ReadAsRowOf(reading).sentence : "There is no answer";
  if (reading.result == ReadAs::kValue) text += LimitOf(explained.findings);
  if (!reading.message.empty()) text += ": " + OneLine(reading.message);
  if (reading.result != ReadAs::kValue || reading.value.empty()) return text + ".\n";
  text += ":\n";
  for (const std::string& line : reading.value) text += "  " + OneLine(line) + "\n";
  return text;
}

// Further lines of a text are indented.
std::string Shortened(const std::string& text) {
  const std::string shown = EscapeForTerminal(text.substr(0, kLongestText));
  std::string indented;
  for (const char c : shown) indented += c == '\n' ? "\n                    " : std::string(1, c);
  return indented + (text.size() > kLongestText ? "..." : "");
}

std::string TextOf(const ExplainedMessage& explained) {
  std::string text = explained.title.empty() ? "" : explained.title + "\n";
  text += explained.kind + (explained.method.empty() ? "" : " of " + explained.method) + "\n";
  for (const ExplainedLine& line : explained.lines) {
    std::string where = std::to_string(line.place.line) + ":" + std::to_string(line.place.column);
    where.resize(std::max<std::size_t>(where.size(), 9), ' ');
    text += where + " " + std::string(2 * line.depth, ' ') + OneLine(line.label) + ": " +
            Shortened(line.text) + "\n";
  }
  for (const ShownFinding& finding : explained.findings) text += FindingText(finding);
  text += "\n" + VerdictOf(explained);
  if (explained.reading && !explained.reading->loss.empty())
    text += "A strict client refuses it: " + OneLine(explained.reading->loss) + ".\n";
  return text;
}

nlohmann::ordered_json ReadingJson(const ClientReading& reading) {
  nlohmann::ordered_json json;
  json["result"] = ReadAsRowOf(reading).name;
  json["value"] = reading.value;
  json["message"] = reading.message;
  json["loss"] = reading.loss;
  return json;
}

std::string JsonOf(const ExplainedMessage& explained) {
  nlohmann::ordered_json json;
  if (!explained.title.empty()) json["title"] = explained.title;
  json["kind"] = explained.kind;
  json["method"] = explained.method;
  json["accepted"] = !explained.IsRefused();
  if (explained.reading) json["client"] = ReadingJson(*explained.reading);
  json["parts"] = nlohmann::ordered_json::array();
  for (const ExplainedLine& line : explained.lines)
    json["parts"].push_back({{"label", line.label},
                             {"text", line.text},
                             {"line", line.place.line},
                             {"column", line.place.column}});
  json["findings"] = nlohmann::ordered_json::array();
  for (const ShownFinding& finding : explained.findings) json["findings"].push_back(FindingJson(finding));
  return JsonText(json) + "\n";
}

}  // namespace

ExitStatus ExplainCommand(const ExplainOptions& options, std::ostream& out) {
  const std::string file = ReadWhole(options.file, "message");
  if (file.find_first_not_of(" \t\r\n") == std::string::npos)
    throw Failure(ExitStatus::kLocal, "the message is empty");
  ExitStatus status = ExitStatus::kOk;
  const char* between = "";
  for (const ExplainedMessage& explained :
       ExplainMessages(options.file, file, static_cast<std::size_t>(options.entry), options.method,
                       options.showSecrets)) {
    out << between << (options.json ? JsonOf(explained) : TextOf(explained));
    between = options.json ? "" : "\n";
    if (explained.IsRefused()) status = ExitStatus::kAnswer;
  }
  out << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
  return status;
}

}  // namespace qv::cli
