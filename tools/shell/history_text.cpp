#include "tools/shell/history_text.h"

#include <algorithm>
#include <cstdint>

namespace qv::cli {

namespace {

constexpr std::size_t kLongestEntry = 65536;

std::string InUrl(const std::string& text) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                         c == '-' || c == '_' || c == '.' || c == '~';
    if (isPlain)
      escaped += c;
    else
      escaped += {'%', kHex[byte >> 4], kHex[byte & 15]};
  }
  return escaped;
}

std::string InXml(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else if (c == '"')
      escaped += "&quot;";
    else
      escaped += c;
  }
  return escaped;
}

// Also as scripts write it.
std::string InQuotes(const std::string& text, char quote) {
  std::string escaped;
  for (const char c : text) escaped += c == quote || c == '\\' ? std::string("\\") + c : std::string(1, c);
  return escaped;
}

// Without the last character, which depends on what follows.
std::string InBase64(const std::string& text) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string encoded;
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text) {
    bits = (bits << 8) | static_cast<unsigned char>(c);
    for (count += 8; count >= 6; count -= 6) encoded += kDigits[(bits >> (count - 6)) & 63];
  }
  return encoded;
}

char Lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Past what may stand between the parts of "usid" : "1234".
std::size_t SkipQuotes(const std::string& text, std::size_t at) {
  return std::min(text.find_first_not_of(" \t\"'`", at), text.size());
}

// Where the value begins of a name that ends at `at`; the end of the text if there is none.
std::size_t ValueAfter(const std::string& text, std::size_t at) {
  at = SkipQuotes(text, at);
  if (text.compare(at, 3, "%3d") == 0) return SkipQuotes(text, at + 3);
  const bool isName = at < text.size() && (text[at] == '=' || text[at] == ':' || text[at] == '>');
  return isName ? SkipQuotes(text, at + 1) : text.size();
}

// Whether a value has the name of a secret, whoever's that is.
bool HoldsNamedSecret(const std::string& entry) {
  std::string text = entry;
  std::transform(text.begin(), text.end(), text.begin(), Lowered);
  for (const std::string name : {"ticket", "password", "usid"})
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
      const std::size_t value = ValueAfter(text, at + name.size());
      if (value < text.size() && std::string("&;<,)}]").find(text[value]) == std::string::npos) return true;
    }
  return false;
}

bool Holds(const std::string& entry, const std::string& secret) {
  const std::string forms[] = {
      secret, InUrl(secret), InXml(secret), InQuotes(secret, '"'), InQuotes(secret, '\''), InBase64(secret)};
  return std::any_of(std::begin(forms), std::end(forms), [&](const std::string& form) {
    return !form.empty() && entry.find(form) != std::string::npos;
  });
}

}  // namespace

std::string HistoryLine(const std::string& entry) {
  std::string line;
  for (const char c : entry) {
    if (c == '\n')
      line += "\\n";
    else
      line += c == '\\' ? "\\\\" : std::string(1, c);
  }
  return line;
}

std::string EntryOf(const std::string& line) {
  std::string entry;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool isEscape = line[i] == '\\' && i + 1 < line.size();
    if (isEscape) ++i;
    entry += isEscape && line[i] == 'n' ? '\n' : line[i];
  }
  return entry;
}

bool MayBeKept(const std::string& entry, const std::vector<std::string>& secrets) {
  if (entry.empty() || entry.front() == ' ' || entry.size() > kLongestEntry) return false;
  if (HoldsNamedSecret(entry)) return false;
  return std::none_of(secrets.begin(), secrets.end(),
                      [&](const std::string& secret) { return Holds(entry, secret); });
}

}  // namespace qv::cli
