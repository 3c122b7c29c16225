// `scriptwells check`: a server step by step, as a client uses it.
#pragma once

#include "tools/inspect/check_report.h"
#include "tools/report/failure.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

// What the server is to run. A step with an empty script is not tried.
struct CheckScripts {
  std::string value;     // returns the parameter `value`
  std::string fault;     // fails
  std::string table;     // returns a table
  std::string upload;    // returns the text of the file in the parameter `file`
  std::string download;  // returns the address of a file
};

struct CheckResult {
  CheckReport report;
  // kOk if a client can work, kUnreachable or kTimeout if there was no connection, kRefused if there was no
  // session for another reason than a rule, else kAnswer.
  ExitStatus status = ExitStatus::kOk;
};

// Throws Failure (kInterrupted, kLocal).
CheckResult CheckServer(const SessionSettings& settings, const CheckScripts& scripts);

}  // namespace qv::cli
