// The XML document in which a script travels.
#pragma once

#include <string>
#include <string_view>

#include "devservice/namespaces.h"

namespace qv::devservice {

// Returns the script text of a script document whose language is JavaScript (any case of letters). Throws
// FaultError with kBadScriptDocument when the text is no script document, with kUnknownLanguage for another
// language. Pure; any thread.
std::string ReadScriptDocument(std::string_view document, const Namespaces& spaces);

}  // namespace qv::devservice
