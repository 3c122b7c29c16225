// Script documents that a client has read from a file and written anew.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// Clients send such a document with every byte of its UTF-8 as a character of its own: "é" arrives as the two
// characters U+00C3 U+00A9. This puts the bytes together again and returns real UTF-8.
//
// A document that a client put together around a script text has whole characters, among which "Ã©" may be
// meant as it stands. So only a document with all the marks of the other kind is touched: two line feeds at
// its end (one behind the root, one behind the whole; the kind put together ends with the root's tag), no
// character above U+00FF, and characters that are valid UTF-8 when taken as bytes. Anything else comes back
// as it is. Takes UTF-8. Pure; any thread.
std::string JoinBytes(std::string_view document);

}  // namespace qv::devservice
