// ASCII letters and digits in units of any width, in every locale.
#pragma once

namespace qv {

template <class Unit>
constexpr bool IsAsciiDigit(Unit unit) noexcept {
  return unit >= Unit('0') && unit <= Unit('9');
}
template <class Unit>
constexpr bool IsAsciiUpper(Unit unit) noexcept {
  return unit >= Unit('A') && unit <= Unit('Z');
}
template <class Unit>
constexpr bool IsAsciiLower(Unit unit) noexcept {
  return unit >= Unit('a') && unit <= Unit('z');
}
template <class Unit>
constexpr bool IsAsciiLetter(Unit unit) noexcept {
  return IsAsciiUpper(unit) || IsAsciiLower(unit);
}

template <class Unit>
constexpr Unit ToAsciiUpper(Unit unit) noexcept {
  return IsAsciiLower(unit) ? static_cast<Unit>(unit - Unit('a') + Unit('A')) : unit;
}
template <class Unit>
constexpr Unit ToAsciiLower(Unit unit) noexcept {
  return IsAsciiUpper(unit) ? static_cast<Unit>(unit - Unit('A') + Unit('a')) : unit;
}

// The value of a hexadecimal digit, ignoring case; -1 for any other unit.
template <class Unit>
constexpr int HexDigitValue(Unit unit) noexcept {
  if (IsAsciiDigit(unit)) return static_cast<int>(unit - Unit('0'));
  const Unit lower = ToAsciiLower(unit);
  return lower >= Unit('a') && lower <= Unit('f') ? static_cast<int>(lower - Unit('a')) + 10 : -1;
}
template <class Unit>
constexpr bool IsHexDigit(Unit unit) noexcept {
  return HexDigitValue(unit) >= 0;
}

}  // namespace qv
