// The result of `scriptwells check`, as text and as JSON.
#pragma once

#include <chrono>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tools/inspect/finding.h"

namespace qv::cli {

enum class StepResult {
  kOk,
  kBroken,   // a rule is broken
  kLoss,     // clients get another value than was sent
  kFailed,   // for another reason than a rule
  kSkipped,  // not tried
};

struct CheckStep {
  std::string name;
  StepResult result = StepResult::kOk;
  std::optional<std::chrono::microseconds> time;
  std::string sentence;
};

// A broken rule as it is shown: escaped, without secrets.
struct ShownFinding {
  Rule rule;
  std::string step;    // where it was first seen
  std::string part;    // "head", "body" or empty
  std::size_t at = 0;  // byte of the part
  std::size_t line = 0, column = 0;
  std::string excerpt;  // the bytes there, cut; may be empty
  std::string what;     // more about it; may be empty
  std::size_t count = 1;
};

struct CheckReport {
  std::string server;
  std::vector<CheckStep> steps;
  std::vector<ShownFinding> findings;  // each rule once

  bool IsUsable() const;
};

std::string FindingText(const ShownFinding& finding);
nlohmann::ordered_json FindingJson(const ShownFinding& finding);

std::string ReportText(const CheckReport& report);
// One line, without its end.
std::string ReportJson(const CheckReport& report);

}  // namespace qv::cli
