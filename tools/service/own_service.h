// The service of one command: --local.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "tools/input/parsed_options.h"
#include "tools/service/local_service.h"
#include "tools/service/private_home.h"

namespace qv::cli {

// The pages of the service, and who also gets the console of scripts.
struct OwnPage {
  devservice::PageHandler& handler;
  devservice::ConsoleSink console;
};

// Everybody on this machine can connect to the service, so only this program knows its user.
class OwnService {
 public:
  // Starts it, with a worker unless that is none; with --replay a tape is in its place, and nothing starts.
  // Makes a home directory for uploads if that is wanted. Prints the console of scripts on `err`. `page` may
  // be null. Throws Failure.
  OwnService(devservice::StartedWorker worker, bool withHome, const ScriptOptions& options, std::ostream& err,
             const OwnPage* page = nullptr);

  std::string Url() const;
  // Has the same name on all tapes.
  const devservice::ServiceUser& User() const noexcept { return user_; }
  // Empty without one.
  std::string Home() const { return home_ ? home_->Path() : std::string(); }

 private:
  std::optional<PrivateHome> home_;
  devservice::ServiceUser user_;
  std::optional<devservice::Service> service_;  // last: it ends first
};

}  // namespace qv::cli
