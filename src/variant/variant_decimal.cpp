#include "variant/variant_decimal.h"
#include "text/ascii.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

namespace qv {
namespace {

// Above every valid exponent, but small enough that sums here cannot overflow.
constexpr std::int64_t kMostExponent = 1'000'000'000'000;

struct Decimal {
  bool isNegative = false;
  std::string digits;         // without leading zeros; empty is 0
  std::int64_t exponent = 0;  // of ten, for the last digit

  // The number of digits before the decimal point; negative if zeros follow it.
  std::int64_t Point() const noexcept { return static_cast<std::int64_t>(digits.size()) + exponent; }
};

// Reads a number from the front of a text, piece by piece.
class DecimalReader {
 public:
  explicit DecimalReader(std::u16string_view text) noexcept : rest_(text) {}

  bool Read(Decimal* decimal) {
    if (Take(u'(')) return InParentheses(decimal);
    const bool isSigned = Sign(&decimal->isNegative);
    if (isSigned) Take(u' ');
    if (!Digits(decimal) || !Exponent(decimal)) return false;
    if (!isSigned) Sign(&decimal->isNegative);
    return rest_.empty();
  }

 private:
  bool Take(char16_t unit) noexcept {
    if (rest_.empty() || rest_.front() != unit) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool InParentheses(Decimal* decimal) {
    decimal->isNegative = true;
    return Digits(decimal) && Exponent(decimal) && Take(u')') && rest_.empty();
  }

  bool Sign(bool* isNegative) noexcept {
    *isNegative = Take(u'-');
    return *isNegative || Take(u'+');
  }

  // False if there is none.
  bool Digits(Decimal* decimal) {
    bool any = false;
    bool whole = true;
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      const char16_t unit = rest_.front();
      if (whole && any && unit == u',') continue;
      if (whole && unit == u'.') {
        whole = false;
        continue;
      }
      if (!IsAsciiDigit(unit)) break;
      any = true;
      if (!whole) --decimal->exponent;
      if (unit != u'0' || !decimal->digits.empty()) decimal->digits.push_back(static_cast<char>(unit));
    }
    return any;
  }

  // False if it has no digits; true if there is no exponent.
  bool Exponent(Decimal* decimal) noexcept {
    if (!Take(u'e') && !Take(u'E')) return true;
    bool isNegative = false;
    Sign(&isNegative);
    if (rest_.empty() || !IsAsciiDigit(rest_.front())) return false;
    std::int64_t exponent = 0;
    for (; !rest_.empty() && IsAsciiDigit(rest_.front()); rest_.remove_prefix(1))
      if (exponent < kMostExponent) exponent = exponent * 10 + (rest_.front() - u'0');
    decimal->exponent += isNegative ? -exponent : exponent;
    return true;
  }

  std::u16string_view rest_;
};

bool AppendDigit(char digit, std::uint64_t* value) noexcept {
  const auto added = static_cast<std::uint64_t>(digit - '0');
  if (*value > (std::numeric_limits<std::uint64_t>::max() - added) / 10) return false;
  *value = *value * 10 + added;
  return true;
}

// Whether `whole`, the value truncated before `fraction`, must be rounded up.
bool RoundsUp(std::uint64_t whole, std::string_view fraction) noexcept {
  if (fraction.empty() || fraction.front() != '5') return !fraction.empty() && fraction.front() > '5';
  return fraction.find_first_not_of('0', 1) != std::string_view::npos || whole % 2 != 0;
}

HRESULT Rounded(const Decimal& decimal, std::uint64_t* magnitude) noexcept {
  const std::int64_t point = decimal.Point();
  if (decimal.digits.empty() || point < 0) return S_OK;
  if (point > std::numeric_limits<std::uint64_t>::digits10 + 1) return DISP_E_OVERFLOW;
  const auto before = static_cast<std::size_t>(point);
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < before; ++i)
    if (!AppendDigit(i < decimal.digits.size() ? decimal.digits[i] : '0', &value)) return DISP_E_OVERFLOW;
  const std::string_view digits = decimal.digits;
  if (before < digits.size() && RoundsUp(value, digits.substr(before)) && ++value == 0)
    return DISP_E_OVERFLOW;
  *magnitude = value;
  return S_OK;
}

struct Base {
  std::u16string_view prefixes[2];
  unsigned bits;  // of a digit
};

constexpr Base kBases[] = {{{u"&H", u"&h"}, 4}, {{u"&O", u"&o"}, 3}};

// Null for a text without a base prefix; else removes the prefix and returns the base.
const Base* TakeBase(std::u16string_view* text) noexcept {
  for (const Base& base : kBases)
    for (const std::u16string_view prefix : base.prefixes)
      if (text->substr(0, prefix.size()) == prefix) {
        text->remove_prefix(prefix.size());
        return &base;
      }
  return nullptr;
}

HRESULT ReadBits(std::u16string_view digits, const Base& base, Whole* whole) noexcept {
  std::uint64_t value = 0;
  bool fits = true;
  for (const char16_t unit : digits) {
    if (!IsHexDigit(unit)) return DISP_E_TYPEMISMATCH;
    const auto digit = static_cast<unsigned>(HexDigitValue(unit));
    if (digit >> base.bits != 0) return DISP_E_TYPEMISMATCH;
    fits = fits && value >> (64 - base.bits) == 0;
    value = value << base.bits | digit;
  }
  if (digits.empty()) return DISP_E_TYPEMISMATCH;
  if (fits) *whole = {false, value, true};
  return fits ? S_OK : DISP_E_OVERFLOW;
}

bool IsBlank(char16_t unit) noexcept {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

HRESULT RealFromDecimalText(std::u16string_view bare, double* value) {
  Decimal decimal;
  if (!DecimalReader(bare).Read(&decimal)) return DISP_E_TYPEMISMATCH;
  double magnitude = 0;
  if (!decimal.digits.empty()) {
    const std::string plain = decimal.digits + 'e' + std::to_string(decimal.exponent);
    const auto read = std::from_chars(plain.data(), plain.data() + plain.size(), magnitude);
    if (read.ec != std::errc()) {
      if (decimal.Point() > 0) return DISP_E_OVERFLOW;
      magnitude = 0;
    }
  }
  *value = decimal.isNegative ? -magnitude : magnitude;
  return S_OK;
}

}  // namespace

std::u16string_view WithoutBlanks(std::u16string_view text) noexcept {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

HRESULT WholeFromText(std::u16string_view text, Whole* whole) {
  std::u16string_view bare = WithoutBlanks(text);
  if (const Base* const base = TakeBase(&bare)) return ReadBits(bare, *base, whole);
  Decimal decimal;
  if (!DecimalReader(bare).Read(&decimal)) return DISP_E_TYPEMISMATCH;
  std::uint64_t magnitude = 0;
  const HRESULT code = Rounded(decimal, &magnitude);
  if (Succeeded(code)) *whole = {decimal.isNegative && magnitude != 0, magnitude};
  return code;
}

HRESULT RealFromText(std::u16string_view text, double* value) {
  std::u16string_view bare = WithoutBlanks(text);
  if (const Base* const base = TakeBase(&bare)) {
    Whole whole;
    const HRESULT code = ReadBits(bare, *base, &whole);
    if (Succeeded(code)) *value = RealFromWhole(whole);
    return code;
  }
  return RealFromDecimalText(bare, value);
}

}  // namespace qv
