#include "tools/session_frame.h"

#include <ostream>

#include "tools/failure.h"
#include "tools/interrupt.h"
#include "tools/password.h"
#include "tools/server_address.h"
#include "tools/time_span.h"

namespace qv::cli {

namespace {

void TellRefusedUploads(const ScriptSession& session, bool asJson, std::ostream& err) {
  for (const RefusedUpload& upload : session.RefusedUploads())
    ReportNote("warning",
               upload.server + " answered the upload of " + upload.path + " with the status " + upload.status,
               asJson, err);
}

void Leave(ScriptSession& session, bool asJson, std::ostream& err) {
  TellRefusedUploads(session, asJson, err);
  try {
    session.Close();
  } catch (const Failure& failure) {
    ReportNote("warning", "the session was not closed: " + failure.Message(), asJson, err);
  }
}

}  // namespace

SessionSettings CheckSettings(const SessionOptions& options) {
  SessionSettings settings;
  settings.proxy = CheckProxy(options.proxy);
  settings.user = options.user;
  settings.replica = options.replica;
  CheckCredential(settings.user, "user name");
  CheckCredential(settings.replica, "replica id");
  settings.http.connectTimeout = Milliseconds(options.connectTimeoutSeconds);
  settings.http.idleTimeout = Milliseconds(options.timeoutSeconds);
  settings.http.totalTimeout = Milliseconds(options.maxTimeSeconds);
  settings.showProgress = !options.json;
  return settings;
}

void InSession(const SessionSettings& settings, bool asJson, std::ostream& err,
               const std::function<void(ScriptSession&)>& work) {
  ScriptSession session(settings);
  try {
    session.Open();
    ThrowIfInterrupted();
    work(session);
  } catch (const Failure&) {
    Leave(session, asJson, err);
    throw;
  }
  Leave(session, asJson, err);
  ThrowIfInterrupted();
}

}  // namespace qv::cli
