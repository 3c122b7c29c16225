// Opens and closes sessions around the work of a command.
#pragma once

#include <functional>

#include "tools/input/parsed_options.h"
#include "tools/report/reporter.h"
#include "tools/transfer/script_session.h"

namespace qv::cli {

// Whether an HTTP header can hold the text. A session's id is sent in one.
bool IsHeaderValue(const std::string& text);

// Checks proxy, user, replica, session id, certificates and times; the caller sets server and password.
// Throws Failure (kLocal).
SessionSettings CheckSettings(const SessionOptions& options);

using SessionWork = std::function<void(ScriptSession&)>;

// Opens a session, does the work in it and always closes it. Throws the first Failure; reports later ones as
// warnings.
void InSession(const SessionSettings& settings, const Reporter& reporter, const SessionWork& work);

// The same, but the session stays open unless there is a failure.
void LeaveSessionOpen(const SessionSettings& settings, const Reporter& reporter, const SessionWork& work);

}  // namespace qv::cli
