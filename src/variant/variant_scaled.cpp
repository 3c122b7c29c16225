#include "variant/variant_scaled.h"

#include <algorithm>

namespace qv {
namespace {

constexpr int kCurrencyPlaces = 4;

struct Scaled {
  bool isNegative;
  int places;
  std::uint32_t parts[3];  // of the magnitude, the lowest first
};

std::uint32_t LowHalf(std::uint64_t value) noexcept {
  return static_cast<std::uint32_t>(value);
}

Scaled ScaledOf(const Operand& operand) noexcept {
  if (operand.type->tag == VT_DECIMAL) {
    const DECIMAL& value = operand.decimal;
    return {value.sign != 0, value.scale, {LowHalf(value.Lo64), LowHalf(value.Lo64 >> 32), value.Hi32}};
  }
  const std::int64_t value = operand.data.cyVal;
  const auto bits = static_cast<std::uint64_t>(value);
  const std::uint64_t magnitude = value < 0 ? 0 - bits : bits;
  return {value < 0, kCurrencyPlaces, {LowHalf(magnitude), LowHalf(magnitude >> 32), 0}};
}

// Divides by ten and returns the remainder.
std::uint32_t TakeLastDigit(Scaled* value) noexcept {
  std::uint64_t rest = 0;
  for (int i = 2; i >= 0; --i) {
    const std::uint64_t part = rest << 32 | value->parts[i];
    value->parts[i] = LowHalf(part / 10);
    rest = part % 10;
  }
  return LowHalf(rest);
}

bool IsZero(const Scaled& value) noexcept {
  return (value.parts[0] | value.parts[1] | value.parts[2]) == 0;
}

}  // namespace

// From the last digit to the first one.
std::u16string ScaledText(const Operand& operand) {
  Scaled value = ScaledOf(operand);
  const bool isNegative = value.isNegative && !IsZero(value);
  std::u16string text;
  for (int place = 0; place <= value.places || !IsZero(value); ++place) {
    if (place == value.places && !text.empty()) text.push_back(u'.');
    const auto digit = static_cast<char16_t>(u'0' + TakeLastDigit(&value));
    if (digit != u'0' || !text.empty() || place >= value.places) text.push_back(digit);
  }
  if (isNegative) text.push_back(u'-');
  std::reverse(text.begin(), text.end());
  return text;
}

}  // namespace qv
