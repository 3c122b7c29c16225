// Document type declarations of script documents.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// Returns the document without its document type declaration, and with the texts of the entities that it
// declares in place of their references. That is for plain texts only: an entity whose text holds markup or
// references other entities, and one that lies outside the document, is not resolved, so a reference to it is
// unknown to the reader of the result. The name of the document type may be missing, since clients write it
// so. Throws XmlError when the declaration does not end, or when the entities make the document longer by
// more than a mebibyte. Takes UTF-8. Pure; any thread.
std::string ResolveDocumentType(std::string_view document);

}  // namespace qv::devservice
