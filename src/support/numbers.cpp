#include "support/numbers.h"
#include "text/ascii.h"

#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale is POSIX

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <system_error>

namespace qv {
namespace {

constexpr std::size_t kMostPlainDigits = 9;   // below 2^31
constexpr std::size_t kMostExactDigits = 15;  // below 2^53

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

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// The usual number, such as -12.50: at most 15 digits, the first and the last unit among them. The digits and
// the power of ten are exact, so their quotient is the nearest double.
std::optional<double> PlainDouble(std::u16string_view text) noexcept {
  if (FLT_EVAL_METHOD != 0) return std::nullopt;  // a quotient that is rounded twice
  const bool negative = !text.empty() && text.front() == u'-';
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > kMostExactDigits + 1 || !IsAsciiDigit(text.back())) return std::nullopt;
  std::uint64_t digits = 0;
  std::size_t count = 0;
  std::size_t wholeDigits = text.size();
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (IsAsciiDigit(text[at])) {
      digits = digits * 10 + static_cast<std::uint64_t>(text[at] - u'0');
      ++count;
    } else if (text[at] == u'.' && at != 0 && wholeDigits == text.size()) {
      wholeDigits = at;
    } else {
      return std::nullopt;
    }
  }
  if (count > kMostExactDigits) return std::nullopt;
  const std::size_t fraction = wholeDigits == text.size() ? 0 : count - wholeDigits;
  // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): a fraction is part of the digits
  const double value = static_cast<double>(digits) / kPowersOfTen[fraction];
  return negative ? -value : value;
}

locale_t CLocale() noexcept {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

constexpr int kGeneralDigits = 6;

// Writes the six digits with a point after `whole` of them, without zeros at the end of a fraction.
char16_t* PutDigits(std::int32_t digits, int whole, char16_t* to) noexcept {
  char16_t units[kGeneralDigits];
  for (int at = kGeneralDigits - 1; at >= 0; --at, digits /= 10)
    units[at] = static_cast<char16_t>(u'0' + digits % 10);
  int count = kGeneralDigits;
  while (count > whole && units[count - 1] == u'0') --count;
  to = std::copy(units, units + whole, to);
  if (count == whole) return to;
  *to++ = u'.';
  return std::copy(units + whole, units + count, to);
}

// The usual number, from 1 up to a million, in general notation. Null for another one, and for one so near to
// the middle of two such texts that the error of the product, which is below 1e-9, could decide.
char16_t* PutUsual(double value, char16_t* to) noexcept {
  constexpr double kNear = 1e-6;
  const double size = std::fabs(value);
  if (!(size >= 1 && size < kPowersOfTen[kGeneralDigits])) return nullptr;
  int whole = 1;
  while (size >= kPowersOfTen[whole]) ++whole;
  const double scaled = size * kPowersOfTen[kGeneralDigits - whole];
  const auto floor = static_cast<std::int32_t>(scaled);
  const double rest = scaled - floor;
  if (std::fabs(rest - 0.5) < kNear || scaled + kNear + 0.5 >= kPowersOfTen[kGeneralDigits]) return nullptr;
  if (value < 0) *to++ = u'-';
  return PutDigits(rest > 0.5 ? floor + 1 : floor, whole, to);
}

std::u16string_view Widened(const char* begin, const char* end, char16_t* place) noexcept {
  return {place, static_cast<std::size_t>(std::copy(begin, end, place) - place)};
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

std::optional<std::int32_t> PlainInt(std::u16string_view text) noexcept {
  const bool negative = !text.empty() && text.front() == u'-';
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > kMostPlainDigits) return std::nullopt;
  std::int32_t value = 0;
  for (const char16_t unit : text) {
    if (!IsAsciiDigit(unit)) return std::nullopt;
    value = value * 10 + (unit - u'0');
  }
  return negative ? -value : value;
}

double ParseDouble(std::u16string_view text) {
  if (const std::optional<double> plain = PlainDouble(text)) return *plain;
  const std::string number = NumberPrefix(WithoutLeadingSpace(text));
  double value = 0;
  const char* const end = number.data() + number.size();
  const auto read = std::from_chars(number.data(), end, value);
  if (read.ec == std::errc() && read.ptr == end) return value;
  // A plus sign, a hexadecimal number, one out of range, or junk after it: rare, so a slow path suffices.
  return strtod_l(number.c_str(), nullptr, CLocale());
}

std::u16string_view DecimalText(std::int64_t value, char16_t* place) noexcept {
  char digits[kLongestNumber];
  return Widened(digits, std::to_chars(digits, digits + sizeof digits, value).ptr, place);
}

std::u16string_view GeneralText(double value, char16_t* place) noexcept {
  const char16_t* const usual = PutUsual(value, place);
  if (usual != nullptr) return {place, static_cast<std::size_t>(usual - place)};
  char digits[kLongestNumber];
  return Widened(
      digits, std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6).ptr, place);
}

WideString DecimalText(std::int64_t value) {
  char16_t place[kLongestNumber];
  return WideString(DecimalText(value, place));
}

WideString GeneralText(double value) {
  char16_t place[kLongestNumber];
  return WideString(GeneralText(value, place));
}

}  // namespace qv
