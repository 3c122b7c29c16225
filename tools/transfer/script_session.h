// One session on one server, through the library's public interfaces only.
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/http_component.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/simple_host.h"
#include "qvscriptwells/xml_library_hold.h"
#include "tools/report/failure.h"
#include "tools/transfer/reporting_http.h"
#include "tools/transfer/time_budget.h"
#include "tools/transfer/transfer_progress.h"
#include "tools/values/parameter_text.h"

namespace qv::cli {

// All texts are UTF-8 and checked already. The destructor clears the secrets of each copy.
struct SessionSettings {
  std::string server;
  std::string proxy;
  std::string user;
  std::string password;
  std::string replica;
  std::string usid;  // of a session to use; empty: a new one is opened
  // The total time is that of the whole session. replaceFiles also allows names that begin with ".".
  HttpOptions http;
  bool showProgress = false;  // of long transfers, if standard error is a terminal

  ~SessionSettings();
};

// Every operation throws Failure. One object per program run, on the main thread: destroying a connection
// model unregisters the library's value types.
class ScriptSession {
 public:
  explicit ScriptSession(const SessionSettings& settings);
  // Does not close the session: the caller does, and sees whether that worked.
  ~ScriptSession();
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;

  // Opens a session, or uses that of the settings without a request.
  void Open();
  Variant Execute(const std::string& language, const std::string& script,
                  const std::vector<ScriptParameter>& parameters);
  // `url` is what CheckDocument returned for `file`; failures name `file`.
  Variant ExecuteDocument(const std::string& url, const std::string& file,
                          const std::vector<ScriptParameter>& parameters);
  // Downloads `url` into `directory` (from CheckFileUrl and CheckTargetDirectory), under the name that the
  // server gives. Returns the file's native path.
  std::string Download(const std::string& url, const std::string& directory);
  // Uploads that the server answered with an error status. The calls went on.
  const std::vector<RefusedUpload>& RefusedUploads() const noexcept { return http_.RefusedUploads(); }
  // Closes the session that Open opened; nothing happens for an adopted one. After an interrupt, and when the
  // session's time is over, this takes at most 2 seconds.
  void Close();
  // Closes the session of the settings.
  void CloseAdopted();
  // The id of the session that Open opened.
  std::string Id() const { return ToUtf8(Session().usid); }

 private:
  void SetServer();
  Failure ExplainOpening(const _com_error& error) const;
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
