// What every command does around its work on a server.
#pragma once

#include <functional>
#include <iosfwd>

#include "tools/options.h"
#include "tools/script_session.h"

namespace qv::cli {

// Whether a header can carry the text, as a session's id has to travel.
bool IsHeaderValue(const std::string& text);

// Proxy, user, replica, session id, certificates and waits, checked; server and password are left to the
// caller. Throws Failure (kLocal).
SessionSettings CheckSettings(const SessionOptions& options);

// Opens a session, does the work in it and closes it on every way out. Throws the Failure of what went wrong
// first; what else went wrong is told on `err`.
void InSession(const SessionSettings& settings, bool asJson, std::ostream& err,
               const std::function<void(ScriptSession&)>& work);

// The same, but the session stays open unless something goes wrong.
void LeaveSessionOpen(const SessionSettings& settings, bool asJson, std::ostream& err,
                      const std::function<void(ScriptSession&)>& work);

}  // namespace qv::cli
