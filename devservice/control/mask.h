// Masks the secrets of a request, for those who only watch.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// The text (an envelope, or the target of a request) with "***" in place of
//  - the content of elements with the local name ConnectionString, usid and CreateUserSessionResult,
//  - all runs of exactly 32 hexadecimal digits: session ids, tickets and the ids of files, wherever they are.
// An element without an end is masked to the end of the text. Pure; any thread.
std::string MaskSecrets(std::string_view text);

}  // namespace qv::devservice
