#include "devservice/values/text.h"

#include <cstdint>

namespace qv::devservice {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(char32_t c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
    return;
  }
  if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
  } else {
    if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    }
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
  }
  out += static_cast<char>(0x80 | (c & 0x3F));
}

void AppendUtf16(std::u16string& out, char32_t c) {
  if (c < 0x10000) {
    out += static_cast<char16_t>(c);
    return;
  }
  out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
  out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
}

// Length of the sequence that `lead` starts, 0 when it starts none.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

// Reads one character at `at` and moves past it; false when the bytes are not one.
bool ReadCharacter(std::string_view text, std::size_t& at, char32_t& c) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = SequenceLength(lead);
  if (length == 0 || text.size() - at < length) return false;
  c = length == 1 ? lead : lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[at + i]);
    if ((next & 0xC0) != 0x80) return false;
    c = (c << 6) | (next & 0x3F);
  }
  at += length;
  const bool tooLong = (length == 3 && c < 0x800) || (length == 4 && c < 0x10000);
  return !tooLong && c <= 0x10FFFF;
}

bool IsCarriable(char32_t c) {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return c != 0xFFFE && c != 0xFFFF && !(c >= 0xD800 && c <= 0xDFFF);
}

// Reads one character of UTF-16, a lone surrogate as itself.
char32_t ReadCharacter(std::u16string_view text, std::size_t& at) {
  const char32_t first = text[at++];
  if (!IsHighSurrogate(first) || at == text.size() || !IsLowSurrogate(text[at])) return first;
  return 0x10000 + ((first - 0xD800) << 10) + (text[at++] - 0xDC00U);
}

const char* EntityFor(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\r':
      return "&#13;";
    default:
      return nullptr;
  }
}

}  // namespace

bool Utf8ToUtf16(std::string_view text, std::u16string& result) {
  result.clear();
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    char32_t c = 0;
    if (!ReadCharacter(text, at, c)) return false;
    AppendUtf16(result, c);
  }
  return true;
}

std::string Utf16ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = ReadCharacter(text, at);
    AppendUtf8(out, c >= 0xD800 && c <= 0xDFFF ? kReplacement : c);
  }
  return out;
}

std::size_t FindForbiddenUnit(std::u16string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    if (!IsCarriable(ReadCharacter(text, at))) return start;
  }
  return std::u16string_view::npos;
}

std::string FoldAscii(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return folded;
}

std::string MakeCarriable(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    char32_t c = 0;
    const std::size_t start = at;
    const bool good = ReadCharacter(utf8, at, c);
    if (!good) at = start + 1;
    AppendUtf8(out, good && IsCarriable(c) ? c : kReplacement);
  }
  return out;
}

std::string EscapeXml(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size() + utf8.size() / 8);
  for (const char c : utf8) {
    if (const char* entity = EntityFor(c)) {
      out += entity;
    } else {
      out += c;
    }
  }
  return out;
}

std::string EncodeLatin1(std::string_view xml) {
  std::string out;
  for (std::size_t at = 0; at < xml.size();) {
    char32_t c = 0;
    if (!ReadCharacter(xml, at, c)) break;
    if (c < 0x100) {
      out += static_cast<char>(c);
    } else {
      out += "&#" + std::to_string(static_cast<std::uint32_t>(c)) + ";";
    }
  }
  return out;
}

std::string EncodeUtf16(std::string_view xml) {
  std::u16string units;
  Utf8ToUtf16(xml, units);
  std::string out = "\xFF\xFE";
  for (const char16_t unit : units) {
    out += static_cast<char>(unit & 0xFF);
    out += static_cast<char>(unit >> 8);
  }
  return out;
}

}  // namespace qv::devservice
