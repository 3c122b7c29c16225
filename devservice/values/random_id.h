// Ids that nobody can guess: of sessions, tickets and published files.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// 32 hexadecimal digits, lower case, from the system's random source. Throws FaultError with kUnavailable
// when that fails. Any thread.
std::string RandomId();

// Whether the text has that form.
bool IsRandomId(std::string_view text);

}  // namespace qv::devservice
