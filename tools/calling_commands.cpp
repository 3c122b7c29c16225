#include "tools/calling_commands.h"

#include "tools/command_frame.h"
#include "tools/commands.h"

namespace qv::cli {

namespace {

ExitStatus Run(const ParsedArguments& parsed, std::ostream& out, std::ostream& err) {
  switch (parsed.command) {
    case Command::kRun:
      RunCommand(parsed.run, out, err);
      return ExitStatus::kOk;
    case Command::kMap:
      MapCommand(parsed.map, out, err);
      return ExitStatus::kOk;
    case Command::kDownload:
      DownloadCommand(parsed.download, out, err);
      return ExitStatus::kOk;
    case Command::kSession:
      SessionCommand(parsed.session, out, err);
      return ExitStatus::kOk;
    case Command::kConfig:
      ConfigSetCommand(parsed.config, out, err);
      return ExitStatus::kOk;
    case Command::kTape:
      return TapeCommand(parsed.tape, out);
    case Command::kText:
    case Command::kUsageError:
    case Command::kProfileError:
    case Command::kRegistry:
    case Command::kDescribe:
    case Command::kServe:
    case Command::kShell:
    case Command::kCheck:
    case Command::kExplain:
      break;
  }
  return ExitStatus::kFault;
}

}  // namespace

int RunCallingCommand(CallingCommand command) noexcept {
  return InCommandFrame(command.parsed, command.err,
                        [&command] { return Run(command.parsed, command.out, command.err); });
}

}  // namespace qv::cli
