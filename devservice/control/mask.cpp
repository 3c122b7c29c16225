#include "devservice/control/mask.h"

#include <algorithm>
#include <iterator>

#include "devservice/values/text.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kMask = "***";
constexpr std::string_view kSecretElements[] = {"ConnectionString", "usid", "CreateUserSessionResult"};

// The local name of the tag at the start of the text, which begins after "<".
std::string_view LocalNameOf(std::string_view tag) {
  const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/>"));
  const std::size_t colon = name.rfind(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool IsSecret(std::string_view element) {
  return std::find(std::begin(kSecretElements), std::end(kSecretElements), element) !=
         std::end(kSecretElements);
}

// Where the end tag of the element is, or the end of the text.
std::size_t FindEndTag(std::string_view text, std::size_t from, std::string_view element) {
  for (std::size_t at = text.find("</", from); at != std::string_view::npos; at = text.find("</", at + 2))
    if (LocalNameOf(text.substr(at + 2)) == element) return at;
  return text.size();
}

// The end of the tag at `start`, after ">"; quoted texts may hold one.
std::size_t EndOfTag(std::string_view text, std::size_t start) {
  char quote = 0;
  for (std::size_t at = start; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != 0)
      quote = c == quote ? '\0' : quote;
    else if (c == '"' || c == '\'')
      quote = c;
    else if (c == '>')
      return at + 1;
  }
  return text.size();
}

std::string MaskElements(std::string_view text) {
  std::string masked;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t start = std::min(text.find('<', at), text.size());
    masked += text.substr(at, start - at);
    if (start == text.size()) break;
    at = start + 1;
    masked += '<';
    const std::string_view element = LocalNameOf(text.substr(at));
    if (!IsSecret(element)) continue;
    const std::size_t end = EndOfTag(text, at);
    masked += text.substr(at, end - at);
    at = end;
    if (text.substr(0, end).substr(end - 2) == "/>") continue;
    masked += kMask;
    at = FindEndTag(text, at, element);
  }
  return masked;
}

// The number that two hexadecimal digits at the start write, or -1.
int ByteOf(std::string_view digits) {
  if (digits.size() < 2 || !IsHexDigit(digits[0]) || !IsHexDigit(digits[1])) return -1;
  return std::stoi(std::string(digits.substr(0, 2)), nullptr, 16);
}

// Of two bytes for each character.
std::u16string Units(std::string_view bytes, bool isBigEndian) {
  std::u16string units;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    units += static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
  }
  return units;
}

// UTF-16 with a byte order mark, or that begins with "<".
std::string Decoded(const std::string& body) {
  using namespace std::string_view_literals;
  const bool isLittle = StartsWith(body, "\xFF\xFE"sv) || StartsWith(body, "<\0"sv);
  const bool isBig = StartsWith(body, "\xFE\xFF"sv) || StartsWith(body, "\0<"sv);
  if (!isLittle && !isBig) return body;
  std::u16string units = Units(body, isBig);
  if (!units.empty() && units.front() == u'\xFEFF') units.erase(0, 1);
  return Utf16ToUtf8(units);
}

}  // namespace

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::string MaskIds(std::string_view text, const std::function<bool(const std::string&)>& isSecret) {
  std::string masked;
  masked.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && IsHexDigit(text[end])) ++end;
    if (end == at) {
      masked += text[at++];
      continue;
    }
    const std::string_view run = text.substr(at, end - at);
    masked += run.size() == kIdDigits && isSecret(std::string(run)) ? kMask : run;
    at = end;
  }
  return masked;
}

std::string MaskTarget(std::string_view target) {
  std::string plain;
  for (std::size_t at = 0; at < target.size(); ++at) {
    const int code = target[at] == '%' ? ByteOf(target.substr(at + 1)) : -1;
    const bool isEscape = code >= 0 && IsHexDigit(static_cast<char>(code));
    plain += isEscape ? static_cast<char>(code) : target[at];
    if (isEscape) at += 2;
  }
  return MaskSecrets(plain);
}

std::string ReadableText(const std::string& body) {
  std::string text = Decoded(body);
  return text.find('\0') == std::string::npos ? text : "(no text)";
}

std::string MaskSecrets(std::string_view text) {
  return MaskIds(MaskElements(text), [](const std::string&) { return true; });
}

}  // namespace qv::devservice
