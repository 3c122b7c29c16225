#include "tools/program.h"

#include <clocale>
#include <ostream>

#include "tools/commands.h"
#include "tools/options/options.h"
#include "tools/report/reporter.h"
#include "tools/report/standard_output.h"
#include "tools/system/interrupt.h"
#include "tools/system/process_start.h"

namespace qv::cli {

namespace {

// Only for the width of characters in tables; numbers do not depend on it.
void SetLocale() {
  const char* set = std::setlocale(LC_CTYPE, "");
  if (set == nullptr || std::string(set) == "C") static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
}

ExitStatus ReportUsage(const ParsedArguments& parsed, const Reporter& reporter) {
  const std::string text = parsed.text + "; try '" + parsed.hint + "'";
  reporter.Report(Failure(ExitStatus::kUsage, text));
  return ExitStatus::kUsage;
}

ExitStatus Dispatch(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  switch (parsed.command) {
    case Command::kText:
      out << parsed.text << std::flush;
      if (!out) throw FailedOutput(out, "cannot write to standard output");
      return ExitStatus::kOk;
    case Command::kUsageError:
      break;
    case Command::kRun:
      RunCommand(parsed.run, out, err);
      return ExitStatus::kOk;
    case Command::kDownload:
      DownloadCommand(parsed.download, out, err);
      return ExitStatus::kOk;
    case Command::kSession:
      SessionCommand(parsed.session, out, err);
      return ExitStatus::kOk;
    case Command::kServe:
      ServeCommand(parsed.serve, out, err);
      return ExitStatus::kOk;
    case Command::kRegistry:
      return RegistryCommand(parsed.registry, out, err);
    case Command::kDescribe:
      return DescribeCommand(parsed.describe, out);
  }
  return ExitStatus::kFault;
}

ReportForm FormFor(const ParsedArguments& parsed) {
  return parsed.command == Command::kServe ? ReportForm::kTextOnly : FormOf(parsed.json);
}

ExitStatus Guarded(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  const Reporter reporter(err, FormFor(parsed));
  try {
    if (parsed.command == Command::kUsageError) return ReportUsage(parsed, reporter);
    return Dispatch(parsed, out, err);
  } catch (const Failure& failure) {
    reporter.Report(failure);
    return failure.Status();
  } catch (const std::exception& error) {
    reporter.Report(Failure(ExitStatus::kFault, error.what()));
    return ExitStatus::kFault;
  }
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) noexcept {
  if (!OpenClosedStreams()) return static_cast<int>(ExitStatus::kLocal);
  try {
    SetTempDirectory();
    const ParsedArguments parsed = ParseArguments(arguments);
    SetLocale();
    WatchForInterrupt();
    return static_cast<int>(Guarded(parsed, out, err));
  } catch (...) {
    return static_cast<int>(ExitStatus::kFault);
  }
}

}  // namespace qv::cli
