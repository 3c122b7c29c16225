// Conversion between UTF-8 and UTF-16: a fast path for ASCII, utfcpp for the rest.
#include <utf8.h>

#include <iterator>
#include <new>
#include <string>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/wide_string.h"
#include "text/string_block.h"

namespace qv {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

std::size_t AsciiPrefix(std::u16string_view text) noexcept {
  std::size_t count = 0;
  while (count < text.size() && text[count] < 0x80) ++count;
  return count;
}

char32_t NextCodePoint(std::u16string_view text, std::size_t& at) noexcept {
  const char16_t unit = text[at++];
  if (unit < 0xD800 || unit > 0xDFFF) return unit;
  const bool pair = unit < 0xDC00 && at < text.size() && text[at] >= 0xDC00 && text[at] <= 0xDFFF;
  if (!pair) return kReplacement;
  return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) +
         (static_cast<char32_t>(text[at++]) - 0xDC00);
}

// For well-formed text. A character of four bytes becomes a pair of units.
std::size_t UnitsBegunBy(unsigned char byte) noexcept {
  if ((byte & 0xC0) == 0x80) return 0;
  return byte < 0xF0 ? 1 : 2;
}

// Part of creating a wide string, so lack of memory has the same code.
std::string Cleaned(std::string_view text) {
  try {
    std::string clean;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(clean), kReplacement);
    return clean;
  } catch (const std::bad_alloc&) {
    _com_raise_error(E_OUTOFMEMORY);
  }
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  const std::size_t ascii = AsciiPrefix(text);
  std::string result(ascii, 0);
  for (std::size_t i = 0; i < ascii; ++i) result[i] = static_cast<char>(text[i]);
  for (std::size_t at = ascii; at < text.size();)
    utf8::append(NextCodePoint(text, at), std::back_inserter(result));
  return result;
}

WideString FromUtf8(std::string_view text) {
  std::string clean;
  if (!utf8::is_valid(text.begin(), text.end())) {
    clean = Cleaned(text);
    text = clean;
  }
  std::size_t length = 0;
  for (const char byte : text) length += UnitsBegunBy(static_cast<unsigned char>(byte));
  BStr units = NewStringBlock(length);
  utf8::unchecked::utf8to16(text.begin(), text.end(), units);
  SetStringLength(units, length);
  return WideString::Attach(units);
}

}  // namespace qv
