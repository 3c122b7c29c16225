// Characters that show nothing themselves, but change the order of others or hide: marks and overrides of the
// writing direction, the byte order mark, the blank without width.
#pragma once

#include <cstddef>
#include <string>

namespace qv::cli {

// The bytes of such a character at this place of a UTF-8 text; 0 for any other.
std::size_t FormatCharacterAt(const std::string& text, std::size_t at) noexcept;

// The columns of its escape, "\u202e".
constexpr std::size_t kFormatEscape = 6;

// The text with the escapes of all such characters.
std::string EscapeFormatCharacters(const std::string& text);

}  // namespace qv::cli
