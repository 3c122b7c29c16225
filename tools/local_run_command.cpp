#include <optional>
#include <utility>

#include "tools/commands.h"
#include "tools/run_command.h"
#include "tools/service/local_service.h"
#include "tools/service/private_home.h"
#include "tools/service/script_console.h"

namespace qv::cli {

namespace {

constexpr char kTapedUser[] = "local";

// A tape in place of the service. Its user has the same name on all tapes.
void PlayLocally(RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter) {
  job.settings.server = "http://localhost";
  job.settings.credentials.user = kTapedUser;
  Run(job, options, out, reporter);
}

}  // namespace

void LocalRunCommand(const RunOptions& options, devservice::StartedWorker worker, std::ostream& out,
                     std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  RunJob job = PrepareRun(options, reporter);
  std::optional<PrivateHome> home;
  if (job.hasFiles) job.settings.options.homeDirectory = home.emplace().Path();
  if (!options.replayFile.empty()) return PlayLocally(job, options, out, reporter);
  // Everybody on this machine can connect to the service, so only this program knows its user.
  devservice::ServiceUser user = RandomUser();
  if (!options.recordFile.empty()) user.name = kTapedUser;
  devservice::ServiceOptions serviceOptions = CommonServiceOptions();
  serviceOptions.users = {user};
  serviceOptions.console = WriteConsole(options.json, err);
  devservice::Service service(serviceOptions);
  StartService(service, std::move(worker));
  job.settings.server = service.Url();
  job.settings.credentials.user = user.name;
  job.settings.credentials.password = user.password;
  Run(job, options, out, reporter);
}

}  // namespace qv::cli
