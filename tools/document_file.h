// Script documents: XML files that the library reads by their names.
#pragma once

#include <string>

namespace qv::cli {

// The file URL of the absolute path, percent-encoded: the form in which the library opens a file of any name.
// Throws Failure (kLocal) for a file that cannot be read, is not a regular one, is empty, or beyond 64 MB.
std::string CheckDocument(const std::string& file);

// Whether a script begins as such a document does, behind blanks and an XML declaration.
bool LooksLikeDocument(const std::string& script);

}  // namespace qv::cli
