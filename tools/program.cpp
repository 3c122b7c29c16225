#include "tools/program.h"

#include <ostream>

#include "tools/command_frame.h"
#include "tools/commands.h"
#include "tools/options/options.h"
#include "tools/report/standard_output.h"
#include "tools/system/process_start.h"

namespace qv::cli {

namespace {

bool MakesNoCall(Command command) {
  return command == Command::kText || command == Command::kUsageError || command == Command::kRegistry ||
         command == Command::kDescribe;
}

ExitStatus RunWithoutCall(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  if (parsed.command == Command::kRegistry) return RegistryCommand(parsed.registry, out, err);
  if (parsed.command == Command::kDescribe) return DescribeCommand(parsed.describe, out);
  if (parsed.command == Command::kUsageError)
    throw Failure(ExitStatus::kUsage, parsed.text + "; try '" + parsed.hint + "'");
  out << parsed.text << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
  return ExitStatus::kOk;
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, CallingCommands callingCommands, std::ostream& out,
               std::ostream& err) noexcept {
  if (!OpenClosedStreams()) return static_cast<int>(ExitStatus::kLocal);
  try {
    SetTempDirectory();
    const ParsedArguments parsed = ParseArguments(arguments);
    if (!MakesNoCall(parsed.command)) return callingCommands(parsed, out, err);
    return InCommandFrame(parsed, err, [&] { return RunWithoutCall(parsed, out, err); });
  } catch (...) {
    return static_cast<int>(ExitStatus::kFault);
  }
}

}  // namespace qv::cli
