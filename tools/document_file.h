// Script documents: XML files that the library reads by their names.
#pragma once

#include <string>

namespace qv::cli {

// The name of the file in the form that the library opens whatever it holds, "file:///" and the absolute
// path. Throws Failure (kLocal) for a name that the library cannot open ('#', '?', '\', not UTF-8), and for a
// file that cannot be read, is no regular one, is empty, or beyond 64 MB.
std::string CheckDocument(const std::string& file);

// Whether a script begins as such a document does, behind blanks and an XML declaration.
bool LooksLikeDocument(const std::string& script);

}  // namespace qv::cli
