#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "tools/commands.h"
#include "tools/input/parameter_text.h"
#include "tools/page/page.h"
#include "tools/report/json_text.h"
#include "tools/report/standard_output.h"
#include "tools/run_command.h"
#include "tools/service/own_service.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

PageScript ScriptOf(const RunJob& job, const RunOptions& options, SharedFiles& files) {
  PageScript script;
  script.code = job.script;
  script.language = options.language;
  for (const std::string& text : options.parameters) {
    const ParameterParts parts = SplitParameter(text);
    PageParameter parameter{parts.name, parts.type, parts.value, 0};
    if (parts.type == "file") parameter = {parts.name, parts.type, "", files.CopyFrom(parts.value).id};
    script.parameters.push_back(std::move(parameter));
  }
  return script;
}

void ShowOnPage(const RunJob& job, const RunOptions& options, devservice::StartedWorker worker,
                std::ostream& out, std::ostream& err) {
  Page page;  // outlives the service
  page.SetScript(ScriptOf(job, options, page.Files()));
  const OwnPage ownPage{page, page.Console()};
  const OwnService service(std::move(worker), true, options, err, &ownPage);
  PagePlace place;
  place.url = service.Url();
  place.ownUser = service.User();
  place.home = service.Home();
  const std::string address = page.Begin(place);
  out << (options.json ? JsonText({{"page", address}}) : address) << std::endl;
  if (!out) throw FailedOutput(out, "cannot write the address to standard output");
  WaitForInterrupt();
  page.Stop();
}

}  // namespace

void LocalRunCommand(const RunOptions& options, devservice::StartedWorker worker, std::ostream& out,
                     std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  RunJob job = PrepareRun(options, reporter);
  if (options.page) return ShowOnPage(job, options, std::move(worker), out, err);
  const OwnService service(std::move(worker), job.hasFiles, options, err);
  job.settings.options.homeDirectory = service.Home();
  job.settings.server = service.Url();
  job.settings.credentials.user = service.User().name;
  job.settings.credentials.password = service.User().password;
  Run(job, options, out, reporter);
}

}  // namespace qv::cli
