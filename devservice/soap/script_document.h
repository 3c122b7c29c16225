// The XML document in which a script travels.
#pragma once

#include <string>
#include <string_view>

#include "devservice/soap/namespaces.h"

namespace qv::devservice {

// Returns the script text of a script document whose language is JavaScript (any case of letters). The
// document, in UTF-8, may be one that a client put together or the rendering of a file (rendered_document.h),
// with a document type declaration (document_type.h), comments, instructions and CDATA sections. Throws
// FaultError with kBadScriptDocument when the text is no script document, with kUnknownLanguage for another
// language. Pure; any thread.
std::string ReadScriptDocument(std::string_view document, const Namespaces& spaces);

}  // namespace qv::devservice
