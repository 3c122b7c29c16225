// Script documents: XML files that the library opens itself.
#pragma once

#include <string>

namespace qv::cli {

// Throws Failure (kLocal) for a file that cannot be read, is not a regular file, is empty, or is longer than
// 64 MB.
void CheckDocument(const std::string& file);

// Whether a script begins like such a document, after blanks, an XML declaration and comments.
bool LooksLikeDocument(const std::string& script);

}  // namespace qv::cli
