#include "devservice/values/text_scanner.h"

#include <algorithm>

namespace qv::devservice {
namespace {

std::size_t CountDigits(std::string_view text) {
  return std::min(text.find_first_not_of("0123456789"), text.size());
}

}  // namespace

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool TextScanner::Take(char wanted) {
  if (rest_.empty() || rest_.front() != wanted) return false;
  rest_.remove_prefix(1);
  return true;
}

bool TextScanner::TakeNumber(std::size_t digits, int& value) {
  if (CountDigits(rest_) < digits) return false;
  value = 0;
  for (const char digit : rest_.substr(0, digits)) value = value * 10 + (digit - '0');
  rest_.remove_prefix(digits);
  return true;
}

std::string_view TextScanner::TakeDigits() {
  const std::string_view digits = rest_.substr(0, CountDigits(rest_));
  rest_.remove_prefix(digits.size());
  return digits;
}

}  // namespace qv::devservice
