// Opens and closes sessions around the work of a command.
#pragma once

#include <functional>

#include "tools/report/reporter.h"
#include "tools/transfer/script_session.h"

namespace qv::cli {

using SessionWork = std::function<void(ScriptSession&)>;

// Notes what of the credentials does not travel as it is.
void NoteRefusedCharacters(const SessionSettings& settings, const Reporter& reporter);

// Opens a session, does the work in it and always closes it. Throws the first Failure; reports later ones as
// warnings.
void InSession(const SessionSettings& settings, const Reporter& reporter, const SessionWork& work);

// The same, but the session stays open unless there is a failure.
void LeaveSessionOpen(const SessionSettings& settings, const Reporter& reporter, const SessionWork& work);

// Closes the session of the settings, which is open already. Throws Failure.
void CloseSession(const SessionSettings& settings, const Reporter& reporter);

}  // namespace qv::cli
