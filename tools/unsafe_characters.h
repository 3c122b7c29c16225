// Characters of a text that comes from elsewhere, which would drive a terminal or hide on it: control
// characters, and format characters, which show nothing themselves but change the order of others or hide
// (marks and overrides of the writing direction, line and paragraph separators, the byte order mark, the
// blank without width). Texts are UTF-8.
#pragma once

#include <cstddef>
#include <string>

namespace qv::cli {

// The bytes of a format character at this place of the text; 0 for any other.
std::size_t FormatCharacterAt(const std::string& text, std::size_t at) noexcept;

// The columns of its escape, "\u202e".
constexpr std::size_t kFormatEscape = 6;

// The text with the escapes of all format characters.
std::string EscapeFormatCharacters(const std::string& text);

// Whether the text holds a control character (U+0000 to U+001F, U+007F to U+009F) or a format character.
bool HoldsUnsafeCharacters(const std::string& text);

// The text with the escapes that a table shows: "\x1b" for each byte of a control character and for each byte
// that is not UTF-8, "\u202e" for a format character. Tabs and line ends ("\n", "\r\n") stay.
std::string EscapeForTerminal(const std::string& text);

// The same value as the JSON text `json`, with "\u007f" for each unsafe character that JSON allows to stand
// as it is.
std::string EscapeForJson(const std::string& json);

}  // namespace qv::cli
