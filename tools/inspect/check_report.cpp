#include "tools/inspect/check_report.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/report/json_text.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr const char* kResultNames[] = {"ok", "BROKEN", "loss", "FAILED", "not tried"};

const char* NameOf(StepResult result) {
  return kResultNames[static_cast<int>(result)];
}

std::string TimeText(const CheckStep& step) {
  if (!step.time) return "-";
  char text[32];
  static_cast<void>(
      std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(step.time->count()) / 1000));
  return text;
}

std::string StepLine(const CheckStep& step) {
  char columns[64];
  static_cast<void>(std::snprintf(columns, sizeof columns, "%-18s %-9s %9s  ", step.name.c_str(),
                                  NameOf(step.result), TimeText(step).c_str()));
  return columns + OneLine(step.sentence) + "\n";
}

std::string Line(const char* name, const std::string& text) {
  if (text.empty()) return {};
  char label[16];
  static_cast<void>(std::snprintf(label, sizeof label, "  %-7s ", name));
  return label + text + "\n";
}

std::string Line(const char* name, const char* text) {
  return text == nullptr ? std::string() : Line(name, std::string(text));
}

std::string FoundText(const ShownFinding& finding) {
  std::string text = finding.step;
  if (!finding.part.empty()) text += ", " + finding.part + ", byte " + std::to_string(finding.at);
  if (finding.line != 0)
    text += " (line " + std::to_string(finding.line) + ", column " + std::to_string(finding.column) + ")";
  if (!finding.excerpt.empty()) text += ": " + finding.excerpt;
  if (!finding.what.empty()) text += ": " + OneLine(finding.what);
  if (finding.count > 1) text += "; and " + std::to_string(finding.count - 1) + " more";
  return text;
}

std::size_t Broken(const CheckReport& report) {
  return static_cast<std::size_t>(
      std::count_if(report.findings.begin(), report.findings.end(),
                    [](const auto& finding) { return !RowOf(finding.rule).isLoss; }));
}

std::string Verdict(const CheckReport& report) {
  if (report.IsUsable()) return "A client can work with this server.\n";
  const std::size_t broken = Broken(report);
  if (broken == 0) return "A client cannot work with this server as it is.\n";
  return "A client cannot work with this server: " + std::to_string(broken) +
         (broken == 1 ? " rule is broken.\n" : " rules are broken.\n");
}

nlohmann::ordered_json Json(const CheckStep& step) {
  nlohmann::ordered_json json;
  json["step"] = step.name;
  json["result"] = step.result == StepResult::kBroken   ? "broken"
                   : step.result == StepResult::kFailed ? "failed"
                                                        : NameOf(step.result);
  json["ms"] = step.time ? nlohmann::ordered_json(static_cast<double>(step.time->count()) / 1000) : nullptr;
  json["text"] = step.sentence;
  return json;
}

nlohmann::ordered_json Hint(const char* text) {
  return text == nullptr ? nlohmann::ordered_json(nullptr) : nlohmann::ordered_json(text);
}

}  // namespace

std::string FindingText(const ShownFinding& finding) {
  const RuleRow& row = RowOf(finding.rule);
  return std::string("\n") + row.id + ": " + row.sentence + "\n" + Line("found", FoundText(finding)) +
         Line("mend", row.remedy) + Line("gSOAP", row.gsoap) + Line("PHP", row.php) + Line("node", row.node);
}

nlohmann::ordered_json FindingJson(const ShownFinding& finding) {
  const RuleRow& row = RowOf(finding.rule);
  nlohmann::ordered_json json;
  json["rule"] = row.id;
  json["loss"] = row.isLoss;
  json["sentence"] = row.sentence;
  json["step"] = finding.step;
  json["part"] = finding.part.empty() ? Hint(nullptr) : Hint(finding.part.c_str());
  json["offset"] = finding.at;
  json["line"] = finding.line;
  json["column"] = finding.column;
  json["found"] = finding.excerpt;
  json["what"] = finding.what;
  json["count"] = finding.count;
  json["mend"] = row.remedy;
  json["servers"] = {{"gSOAP", Hint(row.gsoap)}, {"PHP", Hint(row.php)}, {"node", Hint(row.node)}};
  return json;
}

bool CheckReport::IsUsable() const {
  return Broken(*this) == 0 && std::none_of(steps.begin(), steps.end(), [](const CheckStep& step) {
           return step.result == StepResult::kFailed;
         });
}

std::string ReportText(const CheckReport& report) {
  std::string text;
  for (const CheckStep& step : report.steps) text += StepLine(step);
  for (const ShownFinding& finding : report.findings) text += FindingText(finding);
  return text + "\n" + Verdict(report);
}

std::string ReportJson(const CheckReport& report) {
  nlohmann::ordered_json json;
  json["server"] = report.server;
  json["usable"] = report.IsUsable();
  json["steps"] = nlohmann::ordered_json::array();
  json["findings"] = nlohmann::ordered_json::array();
  for (const CheckStep& step : report.steps) json["steps"].push_back(Json(step));
  for (const ShownFinding& finding : report.findings) json["findings"].push_back(FindingJson(finding));
  return JsonText(json);
}

}  // namespace qv::cli
