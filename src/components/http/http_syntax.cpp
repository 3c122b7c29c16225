#include "components/http/http_syntax.h"

#include <algorithm>

#include "components/http/http_error.h"
#include "qvscriptwells/wide_string.h"
#include "text/ascii.h"

namespace qv {
namespace {

// Which characters a token may have.
struct TokenChars {
  constexpr TokenChars() {
    for (std::size_t c = 0; c < 128; ++c) may[c] = IsAsciiLetter(c) || IsAsciiDigit(c);
    for (const char mark : std::string_view("!#$%&'*+-.^_`|~")) may[static_cast<unsigned char>(mark)] = true;
  }
  bool may[128] = {};
};

constexpr TokenChars kTokenChars;
constexpr std::u16string_view kNotInHost = u"@/\\?#%<>\"[]{}|^`:;,&=+$!'()*";

// Checked first, since almost all hosts have no other characters.
bool IsPlainInHost(char16_t c) noexcept {
  return IsAsciiLetter(c) || IsAsciiDigit(c) || c == u'.' || c == u'-';
}

bool IsControlOrBlank(char16_t c) noexcept {
  return c <= 0x20 || c == 0x7F;
}

std::u16string_view WithoutBrackets(std::u16string_view host) noexcept {
  const bool has = host.size() > 2 && host.front() == u'[' && host.back() == u']';
  return has ? host.substr(1, host.size() - 2) : host;
}

bool IsAddressV6(std::u16string_view text) noexcept {
  if (text.find(u':') == std::u16string_view::npos) return false;
  return std::all_of(text.begin(), text.end(),
                     [](char16_t c) { return IsHexDigit(c) || c == u':' || c == u'.'; });
}

void AppendPercent(std::string* out, unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  *out += '%';
  *out += kDigits[byte >> 4];
  *out += kDigits[byte & 15];
}

}  // namespace

bool IsTokenChar(unsigned char c) noexcept {
  return c < 128 && kTokenChars.may[c];
}

bool IsToken(std::string_view text) noexcept {
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](char c) { return IsTokenChar(static_cast<unsigned char>(c)); });
}

bool IsToken(std::u16string_view text) noexcept {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char16_t c) {
    return c < 0x80 && IsTokenChar(static_cast<unsigned char>(c));
  });
}

bool IsFieldValue(std::u16string_view text) noexcept {
  return std::none_of(text.begin(), text.end(),
                      [](char16_t c) { return c == u'\r' || c == u'\n' || c == 0; });
}

bool IsHost(std::u16string_view text) noexcept {
  if (IsAddressV6(WithoutBrackets(text))) return true;
  return !text.empty() && std::none_of(text.begin(), text.end(), [](char16_t c) {
    return !IsPlainInHost(c) && (IsControlOrBlank(c) || kNotInHost.find(c) != std::u16string_view::npos);
  });
}

std::string HostForUrl(std::u16string_view host) {
  const std::u16string_view bare = WithoutBrackets(host);
  const std::string text = LowerAscii(ToUtf8(bare));
  return IsAddressV6(bare) ? "[" + text + "]" : text;
}

std::string RequestTarget(std::u16string_view path) {
  if (path.empty()) return "/";
  if (path.front() != u'/') ThrowBadArgument("The path of a request begins with \"/\"");
  if (std::any_of(path.begin(), path.end(), IsControlOrBlank))
    ThrowBadArgument("The path of a request holds a control character or a blank");
  std::string text = ToUtf8(path);
  if (text.size() == path.size()) return text;
  std::string target;
  for (const char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x80) target += c;
    if (byte >= 0x80) AppendPercent(&target, byte);
  }
  return target;
}

std::string LowerAscii(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), ToAsciiLower<char>);
  return result;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return ToAsciiLower(x) == ToAsciiLower(y);
         });
}

bool EqualsIgnoringCase(std::u16string_view a, std::string_view b) noexcept {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char16_t x, char y) {
           return x < 0x80 && ToAsciiLower(static_cast<char>(x)) == ToAsciiLower(y);
         });
}

std::string_view TrimBlanks(std::string_view text) noexcept {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

bool ListHasToken(std::string_view list, std::string_view token) noexcept {
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    if (EqualsIgnoringCase(TrimBlanks(list.substr(0, comma)), token)) return true;
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return false;
}

}  // namespace qv
