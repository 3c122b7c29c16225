#include "tools/format_characters.h"

#include <cstdio>

namespace qv::cli {

namespace {

struct Range {
  unsigned first;
  unsigned last;
};

constexpr Range kRanges[] = {{0x61C, 0x61C},   {0x200B, 0x200B}, {0x200E, 0x200F},
                             {0x202A, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}};

unsigned BitsOf(const std::string& text, std::size_t at, unsigned mask) {
  return static_cast<unsigned char>(text[at]) & mask;
}

bool Continues(const std::string& text, std::size_t at) {
  return at < text.size() && BitsOf(text, at, 0xC0) == 0x80;
}

struct Decoded {
  unsigned character;
  std::size_t bytes;  // 0: a character of one byte or of four, or none
};

Decoded DecodedAt(const std::string& text, std::size_t at) {
  if (!Continues(text, at + 1)) return {0, 0};
  const unsigned second = BitsOf(text, at + 1, 0x3F);
  if (BitsOf(text, at, 0xE0) == 0xC0) return {BitsOf(text, at, 0x1F) << 6 | second, 2};
  if (BitsOf(text, at, 0xF0) != 0xE0 || !Continues(text, at + 2)) return {0, 0};
  return {BitsOf(text, at, 0x0F) << 12 | second << 6 | BitsOf(text, at + 2, 0x3F), 3};
}

}  // namespace

std::size_t FormatCharacterAt(const std::string& text, std::size_t at) noexcept {
  const Decoded one = DecodedAt(text, at);
  for (const Range& range : kRanges)
    if (one.character >= range.first && one.character <= range.last) return one.bytes;
  return 0;
}

std::string EscapeFormatCharacters(const std::string& text) {
  std::string escaped;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t bytes = FormatCharacterAt(text, at);
    if (bytes == 0) {
      escaped += text[at++];
      continue;
    }
    char escape[16];
    std::snprintf(escape, sizeof escape, "\\u%04x", DecodedAt(text, at).character);
    escaped += escape;
    at += bytes;
  }
  return escaped;
}

}  // namespace qv::cli
