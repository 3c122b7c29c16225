// The XML document that carries a script.
#pragma once

#include <string>
#include <string_view>

#include "devservice/soap/namespaces.h"

namespace qv::devservice {

// Returns the script text of a script document whose language is JavaScript (any case of letters). The
// document, in UTF-8, is one that a client made around a script or the rendering of a file. It may have a
// document type declaration (document_type.h), comments, instructions and CDATA sections. Throws FaultError:
// kBadScriptDocument when the text is not a script document, kUnknownLanguage for another language. Pure; any
// thread.
std::string ReadScriptDocument(std::string_view document, const Namespaces& spaces);

}  // namespace qv::devservice
