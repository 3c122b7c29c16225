// Conversions of texts between the encodings, and into the forms, that the service needs. All functions are
// pure and thread-safe.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qv::devservice {

// UTF-8 to UTF-16. A surrogate written as three bytes is one unit, so that a pair that arrived as two
// character references becomes one character. Returns false on any other malformed byte; `result` is then
// undefined.
bool Utf8ToUtf16(std::string_view text, std::u16string& result);

// UTF-16 to UTF-8. A lone surrogate becomes U+FFFD.
std::string Utf16ToUtf8(std::u16string_view text);

// Position of the first unit that XML 1.0 cannot carry in any form (control characters, U+FFFE, U+FFFF, lone
// surrogates), or npos.
std::size_t FindForbiddenUnit(std::u16string_view text);

// Letters A to Z become a to z, all other bytes stay.
std::string FoldAscii(std::string_view text);

// Replaces every unit that XML 1.0 cannot carry by U+FFFD.
std::string MakeCarriable(std::string_view utf8);

// Escapes for XML content and attribute values; a carriage return becomes a reference, since readers would
// turn a bare one into a line feed.
std::string EscapeXml(std::string_view utf8);

// Encodes XML text for the wire. Latin-1 writes other characters as references; UTF-16 is little endian with
// a byte order mark. The input has to be valid UTF-8.
std::string EncodeLatin1(std::string_view xml);
std::string EncodeUtf16(std::string_view xml);

}  // namespace qv::devservice
