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

std::string EncodeUtf8(std::u16string_view text);
// `first` and `second` joined, with `room` bytes before them.
RoomyBytes EncodeUtf8WithRoom(std::u16string_view first, std::u16string_view second, std::size_t room);

WideString DecodeUtf8(std::string_view bytes);
WideString DecodeLatin1(std::string_view bytes);
// An odd last byte becomes one U+FFFD; so does a lone surrogate.
WideString DecodeUtf16(std::string_view bytes, bool bigEndian);
// Uses the C library's converter for `charset`. False if there is none.
bool DecodeByIconv(std::string_view bytes, const std::string& charset, WideString* text);

bool IsUtf8(std::string_view bytes) noexcept;
// The number of bytes at the end that form an incomplete character: 0 to 3.
std::size_t OpenTailUtf8(std::string_view bytes) noexcept;
std::size_t OpenTailUtf16(std::string_view bytes, bool bigEndian) noexcept;

}  // namespace qv
