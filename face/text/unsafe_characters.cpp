#include "face/text/unsafe_characters.h"

#include <utf8.h>

#include <cstdio>

namespace scriptwells {

namespace {

struct Range {
  unsigned first;
  unsigned last;
};

constexpr Range kFormat[] = {{0x61C, 0x61C},   {0x200B, 0x200B}, {0x200E, 0x200F},
                             {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}};

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

// The bytes of a control character at this place, 0 for any other. Those from U+0080 on, which terminals obey
// too, have two.
std::size_t ControlCharacterAt(const std::string& text, std::size_t at) {
  const unsigned byte = BitsOf(text, at, 0xFF);
  if (byte < 0x20 || byte == 0x7F) return 1;
  return byte == 0xC2 && Continues(text, at + 1) && BitsOf(text, at + 1, 0xFF) < 0xA0 ? 2 : 0;
}

// Tabs and line ends. A carriage return without a line feed would overwrite the line.
bool IsLayout(const std::string& text, std::size_t at) {
  if (text[at] == '\r') return at + 1 < text.size() && text[at + 1] == '\n';
  return text[at] == '\n' || text[at] == '\t';
}

void AppendCode(std::string& text, const char* form, unsigned code) {
  char escape[16];
  static_cast<void>(std::snprintf(escape, sizeof escape, form, code));
  text += escape;
}

void AppendBytes(std::string& escaped, const std::string& text, std::size_t at, std::size_t bytes) {
  for (std::size_t i = at; i < at + bytes; ++i) AppendCode(escaped, "\\x%02x", BitsOf(text, i, 0xFF));
}

// Appends the character at this place of `text`, escaped if it is unsafe. Returns the bytes that it took from
// `text`.
std::size_t AppendNext(std::string& escaped, const std::string& text, std::size_t at) {
  const std::size_t control = IsLayout(text, at) ? 0 : ControlCharacterAt(text, at);
  if (control != 0) AppendBytes(escaped, text, at, control);
  const std::size_t format = FormatCharacterAt(text, at);
  if (format != 0) AppendCode(escaped, "\\u%04x", DecodedAt(text, at).character);
  if (control + format != 0) return control + format;
  escaped += text[at];
  return 1;
}

}  // namespace

std::size_t FormatCharacterAt(const std::string& text, std::size_t at) noexcept {
  const Decoded one = DecodedAt(text, at);
  for (const Range& range : kFormat)
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
    AppendCode(escaped, "\\u%04x", DecodedAt(text, at).character);
    at += bytes;
  }
  return escaped;
}

bool HoldsUnsafeCharacters(const std::string& text) {
  for (std::size_t at = 0; at < text.size(); ++at)
    if (ControlCharacterAt(text, at) + FormatCharacterAt(text, at) != 0) return true;
  return false;
}

std::string EscapeForTerminal(const std::string& text) {
  std::string escaped;
  escaped.reserve(text.size());
  const auto end = text.end();
  auto invalid = utf8::find_invalid(text.begin(), end);
  for (auto next = text.begin(); next != end;) {
    const auto at = static_cast<std::size_t>(next - text.begin());
    if (next != invalid) {
      next += static_cast<std::ptrdiff_t>(AppendNext(escaped, text, at));
      continue;
    }
    AppendBytes(escaped, text, at, 1);
    invalid = utf8::find_invalid(++next, end);
  }
  return escaped;
}

std::string EscapeInLine(const std::string& text) {
  std::string line;
  for (const char c : EscapeForTerminal(text)) {
    if (c == '\n')
      line += "\\n";
    else if (c == '\r')
      line += "\\r";
    else if (c == '\t')
      line += "\\t";
    else
      line += c;
  }
  return line;
}

std::string OneLine(const std::string& text) {
  std::string line = text;
  for (char& c : line)
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  const std::size_t end = line.find_last_not_of(' ');
  line.resize(end == std::string::npos ? 0 : end + 1);
  return EscapeForTerminal(line);
}

std::string EscapeForJson(const std::string& json) {
  std::string escaped;
  escaped.reserve(json.size());
  for (std::size_t at = 0; at < json.size();) {
    const std::size_t bytes = ControlCharacterAt(json, at) + FormatCharacterAt(json, at);
    if (bytes == 0) {
      escaped += json[at++];
      continue;
    }
    AppendCode(escaped, "\\u%04x", bytes == 1 ? BitsOf(json, at, 0xFF) : DecodedAt(json, at).character);
    at += bytes;
  }
  return escaped;
}

}  // namespace scriptwells
