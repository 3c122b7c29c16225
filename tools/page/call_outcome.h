// What a call came to, as the page shows it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "devservice/values/console_message.h"
#include "scriptwells/error.h"
#include "scriptwells/value.h"

namespace qv::cli {

struct CallOutcome {
  double milliseconds = 0;
  std::optional<scriptwells::Value> value;
  int file = 0;  // the id of the shared file that the value is the address of
  std::optional<scriptwells::Error> error;
  std::vector<devservice::ConsoleMessage> console;
  std::vector<std::string> notes;  // what did not travel as it was
};

// {"milliseconds": 12.3, "value": VALUE, "console": [{"level": "log", "text": "..."}], "notes": [...]}, or in
// place of the value "error": {"message": ..., "phase": "script", "code": 5, "line": 2, "column": 3}, without
// what is not known. VALUE is as FormatAnswer writes it, or {"type": "table", "columns": [...], "rows":
// [...]}.
std::string OutcomeJson(const CallOutcome& outcome);

}  // namespace qv::cli
