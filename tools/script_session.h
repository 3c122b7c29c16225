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

namespace qv::cli {

// All texts are UTF-8 and checked already.
struct SessionSettings {
  std::string server;
  std::string proxy;
  std::string user;
  std::string password;
  std::string replica;
  HttpOptions http;
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

  void Open();
  Variant Execute(const std::string& language, const std::string& script,
                  const std::vector<ScriptParameter>& parameters);
  // `file` as CheckDocument gives it.
  Variant ExecuteDocument(const std::string& file, const std::vector<ScriptParameter>& parameters);
  // Without a session nothing happens. After an interrupt it waits for 2 seconds at most.
  void Close();

 private:
  void SetServer();
  void CheckSessionId();
  WideString ConnectionText() const;

  SessionSettings settings_;
  XmlLibraryHold hold_;
  ReportingHttp http_;
  IQvClientServicesPtr services_;
  IConnectionModelPtr model_;
};

}  // namespace qv::cli
