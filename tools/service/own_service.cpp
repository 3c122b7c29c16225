#include "tools/service/own_service.h"

#include <utility>

#include "tools/service/script_console.h"

namespace qv::cli {

namespace {

constexpr char kTapedUser[] = "local";

}  // namespace

OwnService::OwnService(devservice::StartedWorker worker, bool withHome, const ScriptOptions& options,
                       std::ostream& err, const OwnPage* page) {
  if (withHome) home_.emplace();
  const bool isPlayed = !options.replayFile.empty();
  if (!isPlayed) user_ = RandomUser();
  if (isPlayed || !options.recordFile.empty()) user_.name = kTapedUser;
  if (isPlayed) return;
  devservice::ServiceOptions serviceOptions = CommonServiceOptions();
  serviceOptions.users = {user_};
  serviceOptions.console = WriteConsole(options.json, err);
  if (page != nullptr) {
    serviceOptions.page = &page->handler;
    serviceOptions.console = Both(page->console, serviceOptions.console);
  }
  service_.emplace(serviceOptions);
  StartService(*service_, std::move(worker));
}

std::string OwnService::Url() const {
  return service_ ? service_->Url() : "http://localhost";
}

}  // namespace qv::cli
