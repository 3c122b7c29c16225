#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/commands.h"
#include "tools/input/input_text.h"
#include "tools/inspect/check_report.h"
#include "tools/inspect/message_outline.h"
#include "tools/inspect/saved_message.h"
#include "tools/inspect/shown_findings.h"
#include "tools/report/json_text.h"
#include "tools/report/standard_output.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestText = 2000;

struct Explained {
  SavedMessage message;
  std::string file;
  std::vector<OutlineLine> outline;
  std::vector<ShownFinding> findings;
  bool isRefused = false;
};

// Of the file. In chunks, of the body without them.
Place PlaceIn(const Explained& explained, bool isHead, std::size_t at) {
  if (explained.message.isChunked && !isHead) return PlaceOf(explained.message.body, at);
  return PlaceOf(explained.file, at + (isHead ? 0 : explained.message.bodyBegin));
}

void FindAll(Explained& explained, const KnownSecrets& secrets) {
  const SavedMessage& message = explained.message;
  const RawAnswer answer{message.method, message.head, message.body};
  Findings findings;
  FindHttpFaults(answer, findings);
  FindEnvelopeFaults(answer, findings);
  explained.isRefused = StopsClients(findings);
  for (const Finding& finding : findings)
    AddFinding(finding, answer, "the answer", secrets, explained.findings);
  for (ShownFinding& finding : explained.findings) {
    if (finding.part.empty()) continue;
    const Place place = PlaceIn(explained, finding.part == "head", finding.at);
    finding.line = place.line;
    finding.column = place.column;
  }
}

// A request is not judged: servers differ in what they take.
Explained Explain(const ExplainOptions& options) {
  Explained explained;
  explained.file = ReadWhole(options.file, "message");
  if (explained.file.find_first_not_of(" \t\r\n") == std::string::npos)
    throw Failure(ExitStatus::kLocal, "the message is empty");
  explained.message = ParseMessage(explained.file, options.method);
  KnownSecrets secrets;
  if (!options.showSecrets) LearnSecrets(explained.message, secrets);
  explained.outline = OutlineOf(explained.message);
  for (OutlineLine& line : explained.outline) {
    line.label = secrets.Masked(line.label);
    line.text = secrets.Masked(line.text);
  }
  if (!explained.message.isRequest) FindAll(explained, secrets);
  if (explained.message.isRequest && explained.message.tree.flaw) {
    const Place place = PlaceIn(explained, false, explained.message.tree.flaw->at);
    explained.outline.push_back({0, "not well-formed",
                                 explained.message.tree.flaw->message + ", line " +
                                     std::to_string(place.line) + ", column " + std::to_string(place.column),
                                 false, explained.message.tree.flaw->at});
  }
  return explained;
}

const char* KindOf(const SavedMessage& message) {
  return message.isRequest ? "request" : "answer";
}

const char* VerdictOf(const Explained& explained) {
  if (explained.message.isRequest) return "A client sends such a request.";
  if (explained.isRefused) return "A client refuses this answer, or gets no value from it.";
  return explained.findings.empty() ? "A client reads this answer."
                                    : "A client reads this answer, but not all of it.";
}

// Further lines of a text are indented.
std::string Shortened(const std::string& text) {
  const std::string shown = EscapeForTerminal(text.substr(0, kLongestText));
  std::string indented;
  for (const char c : shown) indented += c == '\n' ? "\n                    " : std::string(1, c);
  return indented + (text.size() > kLongestText ? "..." : "");
}

std::string TextOf(const Explained& explained) {
  std::string text = std::string(KindOf(explained.message)) +
                     (explained.message.method.empty() ? "" : " of " + explained.message.method) + "\n";
  for (const OutlineLine& line : explained.outline) {
    const Place place = PlaceIn(explained, line.isHead, line.at);
    std::string where = std::to_string(place.line) + ":" + std::to_string(place.column);
    where.resize(std::max<std::size_t>(where.size(), 9), ' ');
    text += where + " " + std::string(2 * line.depth, ' ') + OneLine(line.label) + ": " +
            Shortened(line.text) + "\n";
  }
  for (const ShownFinding& finding : explained.findings) text += FindingText(finding);
  return text + "\n" + VerdictOf(explained) + "\n";
}

std::string JsonOf(const Explained& explained) {
  nlohmann::ordered_json json;
  json["kind"] = KindOf(explained.message);
  json["method"] = explained.message.method;
  json["accepted"] = !explained.isRefused;
  json["parts"] = nlohmann::ordered_json::array();
  for (const OutlineLine& line : explained.outline) {
    const Place place = PlaceIn(explained, line.isHead, line.at);
    json["parts"].push_back(
        {{"label", line.label}, {"text", line.text}, {"line", place.line}, {"column", place.column}});
  }
  json["findings"] = nlohmann::ordered_json::array();
  for (const ShownFinding& finding : explained.findings) json["findings"].push_back(FindingJson(finding));
  return JsonText(json) + "\n";
}

}  // namespace

ExitStatus ExplainCommand(const ExplainOptions& options, std::ostream& out) {
  const Explained explained = Explain(options);
  out << (options.json ? JsonOf(explained) : TextOf(explained)) << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
  return explained.isRefused ? ExitStatus::kAnswer : ExitStatus::kOk;
}

}  // namespace qv::cli
