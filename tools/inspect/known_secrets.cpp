#include "tools/inspect/known_secrets.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

namespace qv::cli {

namespace {

constexpr char kMask[] = "***";

std::string ForXml(std::string_view text) {
  std::string escaped;
  for (const char c : text) switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  return escaped;
}

bool IsPlainInUrls(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("-._~").find(c) != std::string_view::npos;
}

std::string ForUrl(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    char code[4];
    static_cast<void>(std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(c)));
    escaped += IsPlainInUrls(c) ? std::string(1, c) : code;
  }
  return escaped;
}

// Of ASCII, in either order of bytes.
std::string Wide(std::string_view text, bool isBigEndian) {
  std::string wide;
  for (const char c : text) {
    wide += isBigEndian ? '\0' : c;
    wide += isBigEndian ? c : '\0';
  }
  return wide;
}

}  // namespace

KnownSecrets::~KnownSecrets() {
  for (std::string& form : forms_) explicit_bzero(form.data(), form.size());
}

// The longest come first, since one may contain another.
void KnownSecrets::Add(std::string_view secret) {
  if (secret.empty()) return;
  const std::string xml = ForXml(secret);
  for (std::string form :
       {std::string(secret), xml, ForXml(xml), ForUrl(secret), Wide(secret, false), Wide(secret, true)})
    if (std::find(forms_.begin(), forms_.end(), form) == forms_.end()) forms_.push_back(std::move(form));
  std::stable_sort(forms_.begin(), forms_.end(),
                   [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
}

std::string KnownSecrets::Masked(std::string_view text) const {
  return MaskedPart(text, 0, text.size());
}

std::string KnownSecrets::MaskedPart(std::string_view text, std::size_t begin, std::size_t end) const {
  end = std::min(end, text.size());
  begin = std::min(begin, end);
  const std::size_t longest = forms_.empty() ? 0 : forms_.front().size();
  std::string shown;
  // A secret may begin before the part.
  for (std::size_t at = begin - std::min(begin, longest); at < end;) {
    const auto found = std::find_if(forms_.begin(), forms_.end(), [&](const std::string& form) {
      return text.compare(at, form.size(), form) == 0;
    });
    const std::size_t length = found == forms_.end() ? 1 : found->size();
    if (at + length > begin) shown += found == forms_.end() ? std::string(1, text[at]) : kMask;
    at += length;
  }
  return shown;
}

}  // namespace qv::cli
