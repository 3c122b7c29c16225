#include "tools/program.h"

#include <unistd.h>

#include <clocale>
#include <ostream>

#include "devservice/workers/script_worker.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "tools/describe_command.h"
#include "tools/download_command.h"
#include "tools/failed_output.h"
#include "tools/failure.h"
#include "tools/interrupt.h"
#include "tools/options.h"
#include "tools/registry_command.h"
#include "tools/run_command.h"
#include "tools/serve_command.h"
#include "tools/session_command.h"
#include "tools/standard_streams.h"
#include "tools/temp_directory.h"

namespace qv::cli {

namespace {

// Only for the width of characters in tables; numbers stay as they are everywhere.
void SetLocale() {
  const char* set = std::setlocale(LC_CTYPE, "");
  if (set == nullptr || std::string(set) == "C") std::setlocale(LC_CTYPE, "C.UTF-8");
}

ExitStatus ReportUsage(const ParsedArguments& parsed, std::ostream& err) {
  const std::string text = parsed.text + "; try '" + parsed.hint + "'";
  ReportFailure(Failure(ExitStatus::kUsage, text), parsed.json, err);
  return ExitStatus::kUsage;
}

ExitStatus Dispatch(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  switch (parsed.command) {
    case Command::kText:
      out << parsed.text << std::flush;
      if (!out) throw FailedOutput(out, "cannot write to standard output");
      return ExitStatus::kOk;
    case Command::kUsageError:
      return ReportUsage(parsed, err);
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
    // The script engine's threads are still running, so nothing may be torn down.
    case Command::kScriptWorker:
      _exit(devservice::RunScriptWorker(STDIN_FILENO));
  }
  return ExitStatus::kFault;
}

ExitStatus Guarded(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  try {
    return Dispatch(parsed, out, err);
  } catch (const Failure& failure) {
    ReportFailure(failure, parsed.json, err);
    return failure.Status();
  } catch (const EQvException& error) {
    ReportFailure(Failure(ExitStatus::kFault, ToUtf8(error.Description())), parsed.json, err);
  } catch (const _com_error& error) {
    ReportFailure(Failure(ExitStatus::kFault, "failure " + HexCode(error.Error())), parsed.json, err);
  } catch (const std::exception& error) {
    ReportFailure(Failure(ExitStatus::kFault, error.what()), parsed.json, err);
  }
  return ExitStatus::kFault;
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) noexcept {
  if (!OpenClosedStreams()) return static_cast<int>(ExitStatus::kLocal);
  try {
    SetTempDirectory();
    const ParsedArguments parsed = ParseArguments(arguments);
    if (parsed.command != Command::kScriptWorker) {
      SetLocale();
      WatchForInterrupt();
    }
    return static_cast<int>(Guarded(parsed, out, err));
  } catch (...) {
    return static_cast<int>(ExitStatus::kFault);
  }
}

}  // namespace qv::cli
