// What a session knows and nobody may see. For the history of `scriptwells shell`.
#pragma once

#include <string>
#include <vector>

#include "scriptwells/session.h"

namespace scriptwells {

// The password, the session's id, and with a listener the last 16 tickets of its uploads. Not during a call.
std::vector<std::string> SecretsOf(const Session& session);

}  // namespace scriptwells
