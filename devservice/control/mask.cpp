#include "devservice/control/mask.h"

#include <algorithm>
#include <iterator>

namespace qv::devservice {
namespace {

constexpr char kMask[] = "***";
constexpr std::size_t kIdDigits = 32;
constexpr std::string_view kSecretElements[] = {"ConnectionString", "usid", "CreateUserSessionResult"};

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// The local name of the tag at the start of the text, which begins after "<".
std::string_view LocalNameOf(std::string_view tag) {
  const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/>"));
  const std::size_t colon = name.rfind(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool StartsSecret(std::string_view tag) {
  const std::string_view name = LocalNameOf(tag);
  return std::find(std::begin(kSecretElements), std::end(kSecretElements), name) != std::end(kSecretElements);
}

// The end of the tag at `start`, after ">"; quoted texts may hold one.
std::size_t EndOfTag(std::string_view text, std::size_t start) {
  char quote = 0;
  for (std::size_t at = start; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != 0)
      quote = c == quote ? 0 : quote;
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
    if (!StartsSecret(text.substr(at))) continue;
    const std::size_t end = EndOfTag(text, at);
    masked += text.substr(at, end - at);
    at = end;
    if (text.substr(0, end).substr(end - 2) == "/>") continue;
    masked += kMask;
    // Any end tag of this name: the content is nothing but text in the requests of clients.
    const std::size_t close = text.find("</", at);
    at = close == std::string_view::npos ? text.size() : close;
  }
  return masked;
}

std::string MaskIds(std::string_view text) {
  std::string masked;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && IsHexDigit(text[end])) ++end;
    if (end == at) {
      masked += text[at++];
      continue;
    }
    if (end - at == kIdDigits)
      masked += kMask;
    else
      masked += text.substr(at, end - at);
    at = end;
  }
  return masked;
}

}  // namespace

std::string MaskSecrets(std::string_view text) {
  return MaskIds(MaskElements(text));
}

}  // namespace qv::devservice
