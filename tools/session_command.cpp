#include "tools/session_command.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "tools/failed_output.h"
#include "tools/failure.h"
#include "tools/json_text.h"
#include "tools/password.h"
#include "tools/server_address.h"
#include "tools/session_frame.h"

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

void Open(const SessionCommandOptions& options, SessionSettings settings, std::ostream& out,
          std::ostream& err) {
  settings.password = FindPassword(options);
  LeaveSessionOpen(settings, options.json, err,
                   [&](ScriptSession& session) { PrintId(session.Id(), options.json, out); });
}

// The server's reason is that of a request of this program, and no script's fault.
[[noreturn]] void RethrowAsNotClosed(const Failure& failure) {
  if (failure.Status() != ExitStatus::kFault) throw failure;
  throw Failure(failure.Status(), "the session was not closed: " + failure.Message())
      .Called("session not closed");
}

void Close(const SessionCommandOptions& options, const SessionSettings& settings, std::ostream& out) {
  ScriptSession session(settings);
  session.Open();
  try {
    session.CloseAdopted();
  } catch (const Failure& failure) {
    RethrowAsNotClosed(failure);
  }
  if (options.json) out << "{\"closed\":true}" << std::endl;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
}

}  // namespace

void SessionCommand(const SessionCommandOptions& options, std::ostream& out, std::ostream& err) {
  SessionSettings settings = CheckSettings(options);
  settings.server = CheckServer(options.server);
  if (options.verb == SessionVerb::kOpen)
    Open(options, std::move(settings), out, err);
  else
    Close(options, settings, out);
}

}  // namespace qv::cli
