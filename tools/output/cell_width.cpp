#include "tools/output/cell_width.h"

#include <cctype>
#include <cwchar>
#include <cwctype>

#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr std::size_t kEscape = 4;  // "\x1b"

struct Character {
  std::size_t bytes;
  std::size_t columns;
};

// As the table library shows it. That also escapes a backslash that looks like an escape.
Character CharacterAt(const std::string& text, std::size_t at) {
  if (const std::size_t bytes = FormatCharacterAt(text, at)) return {bytes, kFormatEscape};
  const char* bytes = text.data() + at;
  const bool control = std::iscntrl(static_cast<unsigned char>(*bytes)) != 0;
  if (control || (*bytes == '\\' && at + 1 < text.size() && bytes[1] == 'x')) return {1, kEscape};
  std::mbstate_t state{};
  wchar_t wide = 0;
  const std::size_t length = std::mbrtowc(&wide, bytes, text.size() - at, &state);
  if (length == 0 || length > text.size() - at)  // not a character of this locale
    return {1, std::isprint(static_cast<unsigned char>(*bytes)) != 0 ? 1 : kEscape};
  if (std::iswprint(static_cast<wint_t>(wide)) == 0) return {length, kEscape * length};
  const int columns = ::wcwidth(wide);
  return {length, columns > 0 ? static_cast<std::size_t>(columns) : 0};
}

// How many bytes of the text fit.
std::size_t FittingBytes(const std::string& text, std::size_t width) {
  std::size_t used = 0;
  std::size_t at = 0;
  while (at < text.size()) {
    const Character next = CharacterAt(text, at);
    if (used + next.columns > width) break;
    used += next.columns;
    at += next.bytes;
  }
  return at;
}

std::string CutSign() {
  const std::string ellipsis = "\xE2\x80\xA6";
  return ShownWidth(ellipsis) == 1 ? ellipsis : "~";
}

}  // namespace

std::size_t ShownWidth(const std::string& text) {
  std::size_t width = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Character next = CharacterAt(text, at);
    width += next.columns;
    at += next.bytes;
  }
  return width;
}

std::string CutToWidth(const std::string& text, std::size_t width) {
  if (FittingBytes(text, width) == text.size()) return text;
  return text.substr(0, FittingBytes(text, width - 1)) + CutSign();
}

}  // namespace qv::cli
