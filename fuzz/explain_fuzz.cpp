// Feeds files to `explain`: messages and tapes. Nothing may crash or be undefined, each part is in the file,
// and an answer that is refused has a rule that says why.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "tools/inspect/explained_message.h"
#include "tools/report/failure.h"

namespace {

using qv::cli::ExplainedMessage;

constexpr const char* kMethods[] = {"", "CreateUserSession", "CloseUserSession"};

void Require(bool holds) {
  if (!holds) std::abort();
}

void LookAt(const ExplainedMessage& explained, std::size_t lines) {
  for (const qv::cli::ExplainedLine& line : explained.lines)
    Require(line.place.line >= 1 && line.place.line <= lines && line.place.column >= 1);
  Require(explained.reading.has_value() == (explained.kind == "answer"));
  const bool isPlayed = explained.title.empty();
  if (explained.IsRefused() && isPlayed)
    Require(!explained.findings.empty() && explained.findings.front().rule != qv::cli::Rule::kUnderstood);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string file(reinterpret_cast<const char*>(data), size);
  if (file.find_first_not_of(" \t\r\n") == std::string::npos) return 0;  // which the command refuses
  // Messages of a tape have their line ends from it, and one more for each element.
  const auto lines = static_cast<std::size_t>(std::count(file.begin(), file.end(), '\n')) + 1;
  for (const char* method : kMethods) try {
      for (const ExplainedMessage& explained : qv::cli::ExplainMessages("file", file, 0, method, false))
        LookAt(explained, lines);
    } catch (const qv::cli::Failure& failure) {
      Require(failure.Status() == qv::cli::ExitStatus::kLocal && !failure.Message().empty());
    }
  return 0;
}
