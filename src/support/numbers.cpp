#include "support/numbers.h"
#include "text/ascii.h"

#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale is POSIX

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string>
#include <system_error>

namespace qv {
namespace {

constexpr std::size_t kLongestNumber = 32;

// isspace of the C locale.
bool IsSpace(char16_t unit) noexcept {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

std::u16string_view WithoutLeadingSpace(std::u16string_view text) noexcept {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  return text;
}

// Units that can be part of a number, including hexadecimal ones, "infinity" and "nan(...)".
bool MayStandInNumber(char16_t unit) noexcept {
  return IsAsciiDigit(unit) || IsAsciiLetter(unit) || unit == u'+' || unit == u'-' || unit == u'.' ||
         unit == u'(' || unit == u')' || unit == u'_';
}

std::string NumberPrefix(std::u16string_view text) {
  std::string prefix;
  for (const char16_t unit : text) {
    if (unit > 0x7F || !MayStandInNumber(unit)) break;
    prefix.push_back(static_cast<char>(unit));
  }
  return prefix;
}

locale_t CLocale() noexcept {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

WideString Widened(const char* begin, const char* end) {
  char16_t units[kLongestNumber];
  return WideString(
      std::u16string_view(units, static_cast<std::size_t>(std::copy(begin, end, units) - units)));
}

}  // namespace

std::int32_t ParseInt(std::u16string_view text) {
  text = WithoutLeadingSpace(text);
  const bool negative = !text.empty() && text.front() == u'-';
  if (negative || (!text.empty() && text.front() == u'+')) text.remove_prefix(1);
  std::uint32_t value = 0;
  for (std::size_t at = 0; at < text.size() && IsAsciiDigit(text[at]); ++at)
    value = value * 10 + static_cast<std::uint32_t>(text[at] - u'0');
  return static_cast<std::int32_t>(negative ? 0 - value : value);
}

double ParseDouble(std::u16string_view text) {
  const std::string number = NumberPrefix(WithoutLeadingSpace(text));
  double value = 0;
  const char* const end = number.data() + number.size();
  const auto read = std::from_chars(number.data(), end, value);
  if (read.ec == std::errc() && read.ptr == end) return value;
  // A plus sign, a hexadecimal number, one out of range, or junk after it: rare, so a slow path suffices.
  return strtod_l(number.c_str(), nullptr, CLocale());
}

WideString DecimalText(std::int64_t value) {
  char digits[kLongestNumber];
  return Widened(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

WideString GeneralText(double value) {
  char digits[kLongestNumber];
  return Widened(digits,
                 std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6).ptr);
}

}  // namespace qv
