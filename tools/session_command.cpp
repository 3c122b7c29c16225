#include "tools/commands.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/report/failure.h"
#include "tools/report/json_text.h"
#include "tools/report/standard_output.h"
#include "tools/transfer/session_frame.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

namespace {

void PrintId(const std::string& usid, bool asJson, std::ostream& out) {
  if (!IsHeaderValue(usid))
    throw Failure(ExitStatus::kAnswer, "the server's session id holds a character that no header carries");
  nlohmann::ordered_json line;
  line["usid"] = usid;
  out << (asJson ? JsonText(line) : usid) << std::endl;
  if (!out) throw FailedOutput(out, "cannot write the session's id to standard output");
}

void Open(const SessionCommandOptions& options, SessionSettings& settings, std::ostream& out,
          std::ostream& err) {
  TakePassword(options, settings);
  LeaveSessionOpen(settings, Reporter(err, FormOf(options.json)),
                   [&](ScriptSession& session) { PrintId(session.Id(), options.json, out); });
}

// In a catch block. The server rejected a request of this program, so it did not refuse a session.
[[noreturn]] void RethrowAsNotClosed(const Failure& failure) {
  if (failure.Status() != ExitStatus::kRefused) throw;
  throw Failure(ExitStatus::kFault, "the session was not closed: " + failure.Message())
      .Called("session not closed");
}

void Close(const SessionCommandOptions& options, const SessionSettings& settings, std::ostream& out,
           std::ostream& err) {
  CheckSettings(settings);
  try {
    CloseSession(settings, Reporter(err, FormOf(options.json)));
  } catch (const Failure& failure) {
    RethrowAsNotClosed(failure);
  }
  if (options.json) out << "{\"closed\":true}" << std::endl;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
}

}  // namespace

void SessionCommand(const SessionCommandOptions& options, std::ostream& out, std::ostream& err) {
  SessionSettings settings = SettingsOf(options);
  if (options.verb == SessionVerb::kOpen)
    Open(options, settings, out, err);
  else
    Close(options, settings, out, err);
}

}  // namespace qv::cli
