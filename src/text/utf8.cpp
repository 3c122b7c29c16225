// Conversion between UTF-8 and UTF-16. utfcpp replaces malformed bytes.
#include <utf8.h>

#include <iterator>
#include <new>
#include <string>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/wide_string.h"
#include "text/string_block.h"
#include "text/utf8_codec.h"

namespace qv {
namespace {

// Part of creating a wide string, so lack of memory has the same code.
std::string Cleaned(std::string_view text) {
  try {
    std::string clean;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(clean), char32_t{kReplacementUnit});
    return clean;
  } catch (const std::bad_alloc&) {
    _com_raise_error(E_OUTOFMEMORY);
  }
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  std::string bytes(Utf8Size(text), 0);
  PutUtf8(text, bytes.data());
  return bytes;
}

WideString FromUtf8(std::string_view text) {
  BStr units = NewStringBlock(text.size());
  const DecodedUtf8 decoded = DecodeWellFormedUtf8(text, units);
  SetStringLength(units, static_cast<std::size_t>(decoded.end - units));
  if (decoded.bytes == text.size()) return WideString::Attach(TrimStringBlock(units, text.size()));
  FreeString(units);
  return FromUtf8(Cleaned(text));
}

}  // namespace qv
