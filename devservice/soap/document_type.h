// Document type declarations of script documents.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// Returns the document without its document type declaration. References to entities that it declares become
// their texts, if these are plain texts: an entity with markup or with references to other entities is not
// resolved, nor is one outside the document, so a reference to it is unknown to the reader of the result. The
// name of the document type may be missing, since clients leave it out. Throws XmlError when the declaration
// does not end, or when the entities add more than 1 MiB to the document. Takes UTF-8. Pure; any thread.
std::string ResolveDocumentType(std::string_view document);

}  // namespace qv::devservice
