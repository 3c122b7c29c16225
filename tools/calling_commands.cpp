#include "tools/calling_commands.h"

#include <utility>

#include "tools/command_frame.h"
#include "tools/commands.h"

namespace qv::cli {

namespace {

ExitStatus Run(CallingCommand& command) {
  const ParsedArguments& parsed = command.parsed;
  switch (parsed.command) {
    case Command::kRun:
      RunCommand(parsed.run, std::move(command.worker), command.out, command.err);
      return ExitStatus::kOk;
    case Command::kDownload:
      DownloadCommand(parsed.download, command.out, command.err);
      return ExitStatus::kOk;
    case Command::kSession:
      SessionCommand(parsed.session, command.out, command.err);
      return ExitStatus::kOk;
    case Command::kServe:
      ServeCommand(parsed.serve, command.out, command.err);
      return ExitStatus::kOk;
    case Command::kDescribe:
      return DescribeCommand(parsed.describe, command.out);
    case Command::kText:
    case Command::kUsageError:
    case Command::kRegistry:
      break;
  }
  return ExitStatus::kFault;
}

}  // namespace

int RunCallingCommand(CallingCommand command) noexcept {
  return InCommandFrame(command.parsed, command.err, [&command] { return Run(command); });
}

}  // namespace qv::cli
