#include "tools/command_frame.h"

#include <clocale>
#include <string>

#include "tools/report/reporter.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

// Only for the width of characters in tables; numbers do not depend on it.
void SetLocale() {
  const char* set = std::setlocale(LC_CTYPE, "");
  if (set == nullptr || std::string(set) == "C") static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
}

ExitStatus Guarded(const ParsedArguments& parsed, std::ostream& err, const RunCommandItself& run) {
  const Reporter reporter(err, FormOf(parsed.json));
  try {
    return run();
  } catch (const Failure& failure) {
    reporter.Report(failure);
    return failure.Status();
  } catch (const std::exception& error) {
    reporter.Report(Failure(ExitStatus::kFault, error.what()));
    return ExitStatus::kFault;
  }
}

}  // namespace

int Reporting(const ParsedArguments& parsed, std::ostream& err, const RunCommandItself& run) noexcept {
  try {
    return static_cast<int>(Guarded(parsed, err, run));
  } catch (...) {
    return static_cast<int>(ExitStatus::kFault);
  }
}

int InCommandFrame(const ParsedArguments& parsed, std::ostream& err, const RunCommandItself& run) noexcept {
  try {
    SetLocale();
    WatchForInterrupt();
  } catch (...) {
    return static_cast<int>(ExitStatus::kFault);
  }
  return Reporting(parsed, err, run);
}

}  // namespace qv::cli
