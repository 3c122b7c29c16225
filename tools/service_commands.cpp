#include <utility>

#include "tools/calling_commands.h"
#include "tools/command_frame.h"
#include "tools/commands.h"

namespace qv::cli {

int RunServiceCommand(CallingCommand command) noexcept {
  return InCommandFrame(command.parsed, command.err, [&command] {
    const ParsedArguments& parsed = command.parsed;
    if (parsed.command == Command::kServe)
      ServeCommand(parsed.serve, command.out, command.err);
    else
      LocalRunCommand(parsed.run, std::move(command.worker), command.out, command.err);
    return ExitStatus::kOk;
  });
}

}  // namespace qv::cli
