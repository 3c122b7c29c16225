#include "tools/session_frame.h"

#include <algorithm>
#include <ostream>

#include "tools/failure.h"
#include "tools/interrupt.h"
#include "tools/local_files.h"
#include "tools/password.h"
#include "tools/server_address.h"
#include "tools/time_span.h"
#include "tools/wire_characters.h"

namespace qv::cli {

namespace {

void TellRefusedUploads(const ScriptSession& session, bool asJson, std::ostream& err) {
  for (const RefusedUpload& upload : session.RefusedUploads())
    ReportNote("warning",
               upload.server + " answered the upload of " + upload.path + " with the status " + upload.status,
               asJson, err);
}

void TellOf(const char* what, const std::string& text, bool asJson, std::ostream& err) {
  const std::string note = RefusedCharacterNote(text);
  if (!note.empty()) ReportNote("note", what + note, asJson, err);
}

// No character of the password is shown.
void TellRefusedCharacters(const SessionSettings& settings, bool asJson, std::ostream& err) {
  if (!settings.usid.empty()) return;  // none of them is sent
  TellOf("the user name ", settings.user, asJson, err);
  if (!FirstRefusedCharacter(settings.password).empty())
    ReportNote("note",
               "the password holds a character that does not travel as well-formed XML, so most servers "
               "refuse it",
               asJson, err);
  TellOf("the replica id ", settings.replica, asJson, err);
}

void Leave(ScriptSession& session, bool asJson, std::ostream& err) {
  TellRefusedUploads(session, asJson, err);
  try {
    session.Close();
  } catch (const Failure& failure) {
    ReportNote("warning", "the session was not closed: " + failure.Message(), asJson, err);
  }
}

// Closes the session if that goes wrong.
void OpenAndWork(ScriptSession& session, bool asJson, std::ostream& err,
                 const std::function<void(ScriptSession&)>& work) {
  try {
    session.Open();
    ThrowIfInterrupted();
    work(session);
  } catch (const Failure&) {
    Leave(session, asJson, err);
    throw;
  }
}

WideString PemFile(const std::string& file, const char* what) {
  return file.empty() ? WideString() : FromUtf8(CheckForLibrary(file, what));
}

}  // namespace

bool IsHeaderValue(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~'; });
}

SessionSettings CheckSettings(const SessionOptions& options) {
  SessionSettings settings;
  settings.http = DefaultHttpOptions();
  settings.proxy = CheckProxy(options.proxy);
  settings.user = options.user;
  settings.replica = options.replica;
  CheckCredential(settings.user, "user name");
  CheckCredential(settings.replica, "replica id");
  settings.usid = options.usid;
  if (!IsHeaderValue(settings.usid))
    throw Failure(ExitStatus::kLocal, "the session's id holds a character that no header carries");
  settings.http.connectTimeout = Milliseconds(options.connectTimeoutSeconds);
  settings.http.idleTimeout = Milliseconds(options.timeoutSeconds);
  settings.http.totalTimeout = Milliseconds(options.maxTimeSeconds);
  if (!options.caFile.empty()) settings.http.caFile = PemFile(options.caFile, "authorities' file");
  if (!options.certificateFile.empty()) {
    settings.http.certificateFile = PemFile(options.certificateFile, "certificate");
    settings.http.keyFile = PemFile(options.keyFile, "key");
  }
  settings.showProgress = !options.json;
  return settings;
}

void InSession(const SessionSettings& settings, bool asJson, std::ostream& err,
               const std::function<void(ScriptSession&)>& work) {
  TellRefusedCharacters(settings, asJson, err);
  ScriptSession session(settings);
  OpenAndWork(session, asJson, err, work);
  Leave(session, asJson, err);
  ThrowIfInterrupted();
}

void LeaveSessionOpen(const SessionSettings& settings, bool asJson, std::ostream& err,
                      const std::function<void(ScriptSession&)>& work) {
  TellRefusedCharacters(settings, asJson, err);
  ScriptSession session(settings);
  OpenAndWork(session, asJson, err, work);
}

}  // namespace qv::cli
