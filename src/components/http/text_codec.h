// UTF-16 to UTF-8 and bytes of any charset to UTF-16, fast for ASCII. Invalid input becomes U+FFFD. Failure:
// only lack of memory (std::bad_alloc, or `_com_error` from the wide string).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "components/http/secret_bytes.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// Bytes with free room before them, so that a head of unknown length can be put there without a copy.
struct RoomyBytes {
  SecretBlock block;
  std::size_t room = 0;  // bytes before the text
  std::size_t size = 0;  // bytes of the text, after the room

  char* Text() const noexcept { return block.get() + room; }
};

// `first` and `second` joined, with `room` bytes before them.
RoomyBytes EncodeUtf8WithRoom(std::u16string_view first, std::u16string_view second, std::size_t room);

// Write the text of `bytes`, of which no byte becomes more than one unit, and return its end.
char16_t* PutDecodedUtf8(std::string_view bytes, char16_t* out) noexcept;
char16_t* PutDecodedLatin1(std::string_view bytes, char16_t* out) noexcept;
// An odd last byte becomes one U+FFFD; so does a lone surrogate.
char16_t* PutDecodedUtf16(std::string_view bytes, bool bigEndian, char16_t* out) noexcept;

WideString DecodeUtf8(std::string_view bytes);
WideString DecodeLatin1(std::string_view bytes);
// Uses the C library's converter for `charset`. False if there is none.
bool DecodeByIconv(std::string_view bytes, const std::string& charset, WideString* text);

bool IsUtf8(std::string_view bytes) noexcept;
// The number of bytes at the end that form an incomplete character: 0 to 3.
std::size_t OpenTailUtf8(std::string_view bytes) noexcept;
std::size_t OpenTailUtf16(std::string_view bytes, bool bigEndian) noexcept;

}  // namespace qv
