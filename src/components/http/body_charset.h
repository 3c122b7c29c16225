// Detects the charset of an answer and decodes its bytes.
#pragma once

#include <string>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

class BodyCharset {
 public:
  BodyCharset() = default;  // UTF-8
  // Decides from the value of `Content-Type` (may be empty), else a byte order mark, else the encoding in the
  // XML declaration, else UTF-8. `start` is the beginning of the body, up to a few hundred bytes. An unknown
  // name counts as UTF-8.
  BodyCharset(std::string_view contentType, std::string_view start);

  // The length of this charset's byte order mark at the front of `start`.
  std::size_t MarkSize(std::string_view start) const noexcept;
  // The number of bytes at the end that form an incomplete character; always 0 for kOther.
  std::size_t OpenTail(std::string_view bytes) const noexcept;
  WideString Decode(std::string_view bytes) const;

  // Whether a body can be decoded in pieces, each without its open tail. False for the rarer charsets.
  bool DecodesPieces() const noexcept { return kind_ != Kind::kOther; }
  // The most units that a number of bytes can become.
  std::size_t MostUnits(std::size_t bytes) const noexcept;
  // Writes the text of `bytes` and returns the end of the output. Not for the rarer charsets.
  char16_t* DecodePiece(std::string_view bytes, char16_t* out) const noexcept;

 private:
  enum class Kind { kUtf8, kUtf16Little, kUtf16Big, kLatin1, kOther };

  bool SetByName(std::string_view given, std::string_view start);
  bool SetByMark(std::string_view start) noexcept;

  Kind kind_ = Kind::kUtf8;
  std::string name_;  // for kOther: the name for the C library's converter
};

// The value of `charset` in a Content-Type, without quotes; empty when there is none.
std::string CharsetParameter(std::string_view contentType);
// The encoding that an XML declaration at the start of `bytes` names; empty when there is none.
std::string DeclaredEncoding(std::string_view bytes);

}  // namespace qv
