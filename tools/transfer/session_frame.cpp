#include "tools/transfer/session_frame.h"

#include <algorithm>

#include "tools/input/password.h"
#include "tools/input/server_address.h"
#include "tools/system/interrupt.h"
#include "tools/system/local_files.h"
#include "tools/values/wire_characters.h"

namespace qv::cli {

namespace {

void WarnOfRefusedUploads(const ScriptSession& session, const Reporter& reporter) {
  for (const RefusedUpload& upload : session.RefusedUploads())
    reporter.Warn(upload.server + " answered the upload of " + upload.path + " with the status " +
                  upload.status);
}

void NoteRefusedCharacter(const char* what, const std::string& text, const Reporter& reporter) {
  const std::string note = RefusedCharacterNote(text);
  if (!note.empty()) reporter.Note(what + note);
}

// Does not name the character of the password.
void NoteRefusedCharacters(const SessionSettings& settings, const Reporter& reporter) {
  if (!settings.usid.empty()) return;  // none of them is sent
  NoteRefusedCharacter("the user name ", settings.user, reporter);
  if (!FirstRefusedCharacter(settings.password).empty())
    reporter.Note(
        "the password holds a character that does not travel as well-formed XML, so most servers refuse it");
  NoteRefusedCharacter("the replica id ", settings.replica, reporter);
}

void Leave(ScriptSession& session, const Reporter& reporter) {
  WarnOfRefusedUploads(session, reporter);
  try {
    session.Close();
  } catch (const Failure& failure) {
    reporter.Warn("the session was not closed: " + failure.Message());
  }
}

// Closes the session after a failure.
void OpenAndWork(ScriptSession& session, const Reporter& reporter, const SessionWork& work) {
  try {
    session.Open();
    ThrowIfInterrupted();
    work(session);
  } catch (const Failure&) {
    Leave(session, reporter);
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

void InSession(const SessionSettings& settings, const Reporter& reporter, const SessionWork& work) {
  NoteRefusedCharacters(settings, reporter);
  ScriptSession session(settings);
  OpenAndWork(session, reporter, work);
  Leave(session, reporter);
  ThrowIfInterrupted();
}

void LeaveSessionOpen(const SessionSettings& settings, const Reporter& reporter, const SessionWork& work) {
  NoteRefusedCharacters(settings, reporter);
  ScriptSession session(settings);
  OpenAndWork(session, reporter, work);
}

}  // namespace qv::cli
