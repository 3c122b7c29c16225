// A saved message with everything that `scriptwells explain` says about it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/inspect/check_report.h"
#include "tools/inspect/client_reading.h"
#include "tools/inspect/message_outline.h"

namespace qv::cli {

// Masked, but not escaped.
struct ExplainedLine {
  std::size_t depth = 0;
  std::string label, text;
  Place place;  // in the file, or in the message of a tape
};

// Texts are masked, but not escaped, except for findings.
struct ExplainedMessage {
  std::string title;   // of an exchange of a tape; empty for a file
  std::string kind;    // "request" or "answer"
  std::string method;  // empty if it is not known
  std::vector<ExplainedLine> lines;
  std::vector<ShownFinding> findings;    // of an answer
  std::optional<ClientReading> reading;  // of an answer

  // Whether clients get neither a value nor a fault from it.
  bool IsRefused() const noexcept;
};

// What is in a file: a message, or a tape, of which `entry` is one exchange, counted from 1; 0 for all.
// `method` is that of the request of an answer that does not say it. Throws Failure (kLocal, kInterrupted).
std::vector<ExplainedMessage> ExplainMessages(const std::string& name, const std::string& file,
                                              std::size_t entry, const std::string& method, bool showSecrets);

}  // namespace qv::cli
