#include "tools/program.h"

#include <ostream>

#include "tools/command_frame.h"
#include "tools/commands.h"
#include "tools/options/options.h"
#include "tools/report/reporter.h"
#include "tools/report/standard_output.h"
#include "tools/system/process_start.h"

namespace qv::cli {

namespace {

// `config set` checks values as the commands that call do.
bool MakesNoCall(const ParsedArguments& parsed) {
  switch (parsed.command) {
    case Command::kText:
    case Command::kUsageError:
    case Command::kProfileError:
    case Command::kRegistry:
    case Command::kDescribe:
      return true;
    case Command::kConfig:
      return parsed.config.verb != ConfigVerb::kSet;
    default:
      return false;
  }
}

ExitStatus PrintText(const std::string& text, std::ostream& out) {
  out << text << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
  return ExitStatus::kOk;
}

ExitStatus RunWithoutCall(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  switch (parsed.command) {
    case Command::kRegistry:
      return RegistryCommand(parsed.registry, out, err);
    case Command::kDescribe:
      return DescribeCommand(parsed.describe, out);
    case Command::kConfig:
      ConfigCommand(parsed.config, out);
      return ExitStatus::kOk;
    case Command::kUsageError:
      throw Failure(ExitStatus::kUsage, parsed.text + "; try '" + parsed.hint + "'");
    case Command::kProfileError:
      throw Failure(ExitStatus::kLocal, parsed.text);
    default:
      return PrintText(parsed.text, out);
  }
}

void PrintNotes(const ParsedArguments& parsed, std::ostream& err) {
  for (const std::string& note : parsed.notes) Reporter(err, FormOf(parsed.json)).Note(note);
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, CallingCommands callingCommands, std::ostream& out,
               std::ostream& err) noexcept {
  if (!OpenClosedStreams()) return static_cast<int>(ExitStatus::kLocal);
  try {
    SetTempDirectory();
    const ParsedArguments parsed = ParseArguments(arguments);
    PrintNotes(parsed, err);
    if (!MakesNoCall(parsed)) return callingCommands(parsed, out, err);
    return InCommandFrame(parsed, err, [&] { return RunWithoutCall(parsed, out, err); });
  } catch (...) {
    return static_cast<int>(ExitStatus::kFault);
  }
}

}  // namespace qv::cli
