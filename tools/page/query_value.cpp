#include "tools/page/query_value.h"

#include <charconv>

namespace qv::cli {

namespace {

std::string PercentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    unsigned code = 0;
    const bool hasDigits = text[at] == '%' && at + 2 < text.size();
    const bool isCode =
        hasDigits && std::from_chars(&text[at + 1], &text[at + 1] + 2, code, 16).ptr == &text[at + 1] + 2;
    if (isCode) at += 2;
    decoded += isCode ? static_cast<char>(code) : text[at] == '+' ? ' ' : text[at];
  }
  return decoded;
}

}  // namespace

std::string QueryValue(const std::string& target, std::string_view name) {
  for (std::size_t at = target.find('?'); at != std::string::npos; at = target.find('&', at + 1)) {
    const std::string_view pair = std::string_view(target).substr(at + 1, target.find('&', at + 1) - at - 1);
    if (pair.substr(0, name.size()) == name && pair.substr(name.size(), 1) == "=")
      return PercentDecoded(pair.substr(name.size() + 1));
  }
  return {};
}

}  // namespace qv::cli
