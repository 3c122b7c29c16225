// One session on one server, through the library's public interfaces only.
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/http_component.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/simple_host.h"
#include "qvscriptwells/xml_library_hold.h"
#include "tools/parameter_text.h"
#include "tools/reporting_http.h"
#include "tools/time_budget.h"
#include "tools/transfer_progress.h"
#include "tools/wipe.h"

namespace qv::cli {

// All texts are UTF-8 and checked already. Each copy clears its secrets when it goes.
struct SessionSettings {
  std::string server;
  std::string proxy;
  std::string user;
  std::string password;
  std::string replica;
  std::string usid;  // a session that is open already; empty: one is opened
  // The total time is that of the whole session. With replaceFiles, downloads take names that begin with ".",
  // too.
  HttpOptions http;
  bool showProgress = false;  // of long transfers, if standard error is a terminal

  ~SessionSettings() {
    Wipe(password);
    Wipe(usid);
  }
};

// Every operation throws Failure. One object per program run, on the main thread: the library empties its
// value types when a connection model goes.
class ScriptSession {
 public:
  explicit ScriptSession(const SessionSettings& settings);
  // Closes no session: the caller does, to hear how that went.
  ~ScriptSession();
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;

  // Adopts the session of the settings, if they name one: the server is not asked then.
  void Open();
  Variant Execute(const std::string& language, const std::string& script,
                  const std::vector<ScriptParameter>& parameters);
  // `url` as CheckDocument gives it for `file`, whose name failures tell.
  Variant ExecuteDocument(const std::string& url, const std::string& file,
                          const std::vector<ScriptParameter>& parameters);
  // Fetches `url` into `directory` (as CheckFileUrl and CheckTargetDirectory give them) under the name that
  // the server gives. The path of the file, as the system opens it.
  std::string Download(const std::string& url, const std::string& directory);
  // Uploads that the server answered with no success, though the calls went on.
  const std::vector<RefusedUpload>& RefusedUploads() const noexcept { return http_.RefusedUploads(); }
  // Without a session, and for an adopted one, nothing happens. After an interrupt, and when the session's
  // time is over, it takes 2 seconds at most.
  void Close();
  // Closes the adopted session, which a program of its own opened.
  void CloseAdopted();
  // The id of the session that Open opened.
  std::string Id() const { return ToUtf8(Session().usid); }

 private:
  void SetServer();
  SimpleHostSession Session() const;
  void CheckSessionId() const;
  void Hurry();
  WideString ConnectionText() const;

  SessionSettings settings_;
  XmlLibraryHold hold_;
  TimeBudget budget_;
  TransferProgress progress_;
  ReportingHttp http_;
  IQvClientServicesPtr services_;
  IQvScriptwellsPtr client_;
  IConnectionModelPtr model_;  // null before Open
};

}  // namespace qv::cli
