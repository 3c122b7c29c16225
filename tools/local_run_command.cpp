#include <utility>

#include "tools/commands.h"
#include "tools/run_command.h"
#include "tools/service/own_service.h"

namespace qv::cli {

void LocalRunCommand(const RunOptions& options, devservice::StartedWorker worker, std::ostream& out,
                     std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  RunJob job = PrepareRun(options, reporter);
  const OwnService service(std::move(worker), job.hasFiles, options, err);
  job.settings.options.homeDirectory = service.Home();
  job.settings.server = service.Url();
  job.settings.credentials.user = service.User().name;
  job.settings.credentials.password = service.User().password;
  Run(job, options, out, reporter);
}

}  // namespace qv::cli
