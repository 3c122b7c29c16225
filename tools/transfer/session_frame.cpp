#include "tools/transfer/session_frame.h"

#include "scriptwells/value.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

void NoteLosses(const std::string& what, const std::string& text, const Reporter& reporter) {
  for (const std::string& loss : scriptwells::LossesOnTheWire(text)) reporter.Note(what + loss);
}

void Warn(ScriptSession& session, const Reporter& reporter) {
  for (const std::string& warning : session.TakeWarnings()) reporter.Warn(warning);
}

void Leave(ScriptSession& session, const Reporter& reporter) {
  std::string failed;
  try {
    session.Close();
  } catch (const Failure& failure) {
    failed = failure.Message();
  }
  Warn(session, reporter);
  if (!failed.empty()) reporter.Warn("the session was not closed: " + failed);
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

}  // namespace

// Does not name the character of the password.
void NoteRefusedCharacters(const SessionSettings& settings, const Reporter& reporter) {
  if (!settings.usid.empty()) return;  // none of them is sent
  NoteLosses("the user name ", settings.credentials.user, reporter);
  if (!scriptwells::LossesOnTheWire(settings.credentials.password).empty())
    reporter.Note(
        "the password holds a character that does not travel as well-formed XML, so most servers refuse it");
  NoteLosses("the replica id ", settings.credentials.replica, reporter);
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
  session.LeaveOpen();
  Warn(session, reporter);
}

void CloseSession(const SessionSettings& settings, const Reporter& reporter) {
  ScriptSession session(settings);
  session.Open();
  session.CloseAdopted();
  Warn(session, reporter);
}

}  // namespace qv::cli
