// The sessions of the page on the service, and their calls: a client like any other.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "devservice/values/credentials.h"
#include "scriptwells/session.h"
#include "tools/page/call_outcome.h"
#include "tools/page/call_request.h"
#include "tools/page/page_console.h"
#include "tools/page/shared_files.h"

namespace qv::cli {

// Where the page's calls go.
struct PagePlace {
  std::string url;  // of the service: "http://127.0.0.1:8080"
  bool needsPassword = false;
  std::optional<devservice::ServiceUser>
      ownUser{};           // if only this program knows it; the page calls it "page"
  std::string home{};      // has the upload scripts; may be empty
  std::string registry{};  // names it for other programs; may be empty
};

// All operations throw PageError. Thread-safe.
class PageSessions {
 public:
  static constexpr std::size_t kMostSessions = 20;
  static constexpr int kMostCalls = 8;  // at one time

  // Both are borrowed.
  PageSessions(PageConsole& console, SharedFiles& files);
  // Leaves sessions as they are: the service has ended.
  ~PageSessions();
  PageSessions(const PageSessions&) = delete;
  PageSessions& operator=(const PageSessions&) = delete;

  // To be called once, before all others.
  void Begin(const PagePlace& place);
  // Cancels all calls. Later ones are refused.
  void Stop();

  // The JSON of a session: {"id": 1, "user": "joe", "opened": "2024-03-05T10:15:30Z", "runs": 3}.
  std::string Open(const std::string& user, const std::string& password);
  void Close(int id);
  std::string AllJson() const;  // an array
  // The user of a session, if there is such a one.
  std::optional<std::string> UserOf(int id) const;

  CallOutcome Run(const CallRequest& request);
  void Cancel(const std::string& run);
  // Fetches a script's file, unless it is there already.
  SharedFile Fetch(int id);

 private:
  struct Opened;
  class Slot;
  class NamedRun;

  scriptwells::Options OptionsOf(Opened& opened) const;
  std::shared_ptr<Opened> Find(int id) const;
  CallOutcome RunIn(Opened& opened, const CallRequest& request, const scriptwells::CancelToken& cancel);
  scriptwells::Arguments ArgumentsOf(const PageScript& script, std::vector<std::string>& notes,
                                     std::vector<SharedFile>& used) const;
  bool IsOwnFile(const std::string& text) const;

  PageConsole& console_;
  SharedFiles& files_;
  PagePlace place_;
  std::atomic<int> calls_{0};
  std::atomic<bool> stopped_{false};
  scriptwells::CancelToken stop_;  // of all calls that have no name
  mutable std::mutex mutex_;
  std::map<int, std::shared_ptr<Opened>> sessions_;
  std::map<std::string, std::pair<int, scriptwells::CancelToken>> runs_;  // by name: session, and its token
  int last_ = 0;
};

}  // namespace qv::cli
