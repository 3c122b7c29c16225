#include "tools/calling_commands.h"
#include "tools/command_frame.h"
#include "tools/commands.h"

namespace qv::cli {

int RunInspectCommand(CallingCommand command) noexcept {
  return InCommandFrame(command.parsed, command.err, [&command] {
    const ParsedArguments& parsed = command.parsed;
    return parsed.command == Command::kCheck ? CheckCommand(parsed.check, command.out)
                                             : ExplainCommand(parsed.explain, command.out);
  });
}

}  // namespace qv::cli
