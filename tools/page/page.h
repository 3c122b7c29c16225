// The page of the development service, on which a person runs scripts and sees the requests.
#pragma once

#include <atomic>
#include <string>
#include <utility>

#include "devservice/control/page_handler.h"
#include "devservice/values/console_message.h"
#include "tools/page/page_console.h"
#include "tools/page/page_entry.h"
#include "tools/page/page_sessions.h"
#include "tools/page/shared_files.h"

namespace qv::cli {

// Outlives the service, whose options name it as their page. Its interface is in devservice/README.md.
class Page : public devservice::PageHandler {
 public:
  // Throws Failure (kLocal) if a file that the page needs is missing.
  Page();

  // Before the service runs: what the editor holds at first. A parameter that is a file is copied.
  void SetScript(PageScript script) { script_ = std::move(script); }
  SharedFiles& Files() { return files_; }
  devservice::ConsoleSink Console();

  // The service runs. Returns the page's address, which lets one browser in.
  std::string Begin(const PagePlace& place);
  // Ends all calls, before the service ends.
  void Stop() { sessions_.Stop(); }

  devservice::BodyPlan PlanBody(const devservice::HttpRequest& head) override;
  devservice::HttpAnswer Handle(const devservice::HttpRequest& request,
                                devservice::ServiceView& service) override;

 private:
  struct Call;
  struct Route;
  static const Route kRoutes[];

  void CheckAccess(const devservice::HttpRequest& request) const;
  devservice::HttpAnswer Answer(const devservice::HttpRequest& request, devservice::ServiceView& service);
  devservice::HttpAnswer Enter(const devservice::HttpRequest& request);
  devservice::HttpAnswer Dispatch(const devservice::HttpRequest& request, devservice::ServiceView& service);
  devservice::HttpAnswer FromControl(const Call& call);
  devservice::HttpAnswer State(const Call& call);
  devservice::HttpAnswer OpenSession(const Call& call);
  devservice::HttpAnswer CloseSession(const Call& call);
  devservice::HttpAnswer Run(const Call& call);
  devservice::HttpAnswer Cancel(const Call& call);
  devservice::HttpAnswer ListFiles(const Call& call);
  devservice::HttpAnswer SendFile(const Call& call);
  devservice::HttpAnswer RemoveFile(const Call& call);
  devservice::HttpAnswer Copy(const Call& call);
  std::string FilesJson() const;

  PageScript script_;
  PageEntry entry_;
  PageConsole console_;
  SharedFiles files_;
  PageSessions sessions_;
  PagePlace place_;
  std::atomic<bool> begun_{false};
};

}  // namespace qv::cli
