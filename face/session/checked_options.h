// The options of a session, checked, in the form of the interfaces below.
#pragma once

#include "face/exchange/call_settings.h"
#include "scriptwells/options.h"

namespace scriptwells {

// Checks proxy and certificates. Throws Error (kAddress, kLocalFile).
CallSettings CheckedSettings(const Options& options);

// Throws Error (kAddress) for what a connection string cannot carry. Names no password.
void CheckCredentials(const Credentials& credentials);

// Throws Error (kAddress) for an id that no HTTP header carries.
void CheckSessionId(const std::string& id);

}  // namespace scriptwells
