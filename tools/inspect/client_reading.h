// What this client makes of a saved answer: a session of the library reads it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "face/session/saved_answer.h"
#include "scriptwells/error.h"
#include "tools/inspect/rules.h"

namespace qv::cli {

// Whether the server reported a fault in good form.
bool IsFault(const scriptwells::Error& error);

// The rule that is broken by an answer that did not come, or not in full.
std::optional<Rule> RuleOfSilence(const scriptwells::Error& error);

enum class ReadAs {
  kValue,    // also an answer that has none, such as that to a close
  kNothing,  // an empty value
  kFault,
  kRefused,
  kFile  // not read: the answer to an upload or a download
};

struct ClientReading {
  ReadAs result = ReadAs::kFile;
  std::vector<std::string> value;  // in lines
  std::string message;             // of a fault, or why the answer is refused
  std::optional<Rule> rule;        // why it is refused, if it did not come in full
  std::string loss;                // what a strict client refuses; empty: nothing
};

ClientReading ReadAsClient(const scriptwells::SavedExchange& exchange);

}  // namespace qv::cli
