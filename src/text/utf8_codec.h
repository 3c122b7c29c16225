// Building blocks for conversions between UTF-8 and UTF-16. ASCII is copied sixteen characters at a time.
#pragma once

#include <cstddef>
#include <string_view>

namespace qv {

constexpr char16_t kReplacementUnit = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t c) noexcept {
  return c >= 0xD800 && c < 0xDC00;
}
constexpr bool IsLowSurrogate(char32_t c) noexcept {
  return c >= 0xDC00 && c < 0xE000;
}
constexpr bool IsSurrogate(char32_t c) noexcept {
  return c >= 0xD800 && c < 0xE000;
}

// Copies the ASCII prefix and returns its length.
std::size_t NarrowAscii(std::u16string_view text, char* out) noexcept;
std::size_t WidenAscii(std::string_view bytes, char16_t* out) noexcept;

// How long the ASCII prefix is.
std::size_t AsciiPrefix(std::string_view bytes) noexcept;

// How many bytes PutUtf8 writes.
std::size_t Utf8Size(std::u16string_view text) noexcept;
// Writes `text` as UTF-8, each lone surrogate as U+FFFD, and returns the end of the output.
char* PutUtf8(std::u16string_view text, char* out) noexcept;

// The longest prefix that could begin a character, and the character if the prefix is complete.
struct Utf8Piece {
  std::size_t size;
  char32_t character;  // U+FFFD unless whole
  bool isWhole;
  bool isOpen;  // the bytes ended inside the character
};

// `bytes` must not be empty.
Utf8Piece FirstUtf8Piece(std::string_view bytes) noexcept;
// Writes one or two units and returns their end.
char16_t* PutUtf16(char32_t character, char16_t* out) noexcept;

struct DecodedUtf8 {
  std::size_t bytes;  // number of bytes read
  char16_t* end;      // of the output
};

// Decodes up to the first malformed byte. Writes at most one unit per byte.
DecodedUtf8 DecodeWellFormedUtf8(std::string_view bytes, char16_t* out) noexcept;

}  // namespace qv
