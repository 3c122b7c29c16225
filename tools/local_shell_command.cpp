#include <utility>

#include "tools/calling_commands.h"
#include "tools/command_frame.h"
#include "tools/commands.h"
#include "tools/service/own_service.h"
#include "tools/shell_command.h"

namespace qv::cli {

// A file may be uploaded later, so there is always a home directory.
void LocalShellCommand(const ShellOptions& options, devservice::StartedWorker worker, std::ostream& out,
                       std::ostream& err) {
  SessionSettings settings = PrepareShell(options);
  const OwnService service(std::move(worker), true, options, err);
  settings.options.homeDirectory = service.Home();
  settings.server = service.Url();
  settings.credentials.user = service.User().name;
  settings.credentials.password = service.User().password;
  RunShell(options, settings, out, err);
}

int RunLocalShellCommand(CallingCommand command) noexcept {
  return InCommandFrame(command.parsed, command.err, [&command] {
    LocalShellCommand(command.parsed.shell, std::move(command.worker), command.out, command.err);
    return ExitStatus::kOk;
  });
}

}  // namespace qv::cli
