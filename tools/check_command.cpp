#include <ostream>

#include "tools/commands.h"
#include "tools/inspect/server_check.h"
#include "tools/report/standard_output.h"

namespace qv::cli {

ExitStatus CheckCommand(const CheckOptions& options, std::ostream& out) {
  SessionSettings settings = SettingsOf(options);
  settings.options.language = options.language;
  TakePassword(options, settings);
  const CheckResult result =
      CheckServer(settings, {options.valueScript, options.faultScript, options.tableScript,
                             options.uploadScript, options.downloadScript});
  out << (options.json ? ReportJson(result.report) + "\n" : ReportText(result.report)) << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
  return result.status;
}

}  // namespace qv::cli
