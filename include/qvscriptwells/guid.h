// SPDX-License-Identifier: Apache-2.0
// 128-bit identifiers of interfaces and classes. Values, freely copied, usable from any thread.
#pragma once

#include <cstdint>

namespace qv {

// The field layout of RFC 4122; `data4` is the last eight bytes in order.
struct Guid {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::uint8_t data4[8];
};

constexpr bool operator==(const Guid& a, const Guid& b) noexcept {
  if (a.data1 != b.data1 || a.data2 != b.data2 || a.data3 != b.data3) return false;
  for (int i = 0; i < 8; ++i)
    if (a.data4[i] != b.data4[i]) return false;
  return true;
}
constexpr bool operator!=(const Guid& a, const Guid& b) noexcept {
  return !(a == b);
}

// Any strict order, for use as a map key.
constexpr bool operator<(const Guid& a, const Guid& b) noexcept {
  if (a.data1 != b.data1) return a.data1 < b.data1;
  if (a.data2 != b.data2) return a.data2 < b.data2;
  if (a.data3 != b.data3) return a.data3 < b.data3;
  for (int i = 0; i < 8; ++i)
    if (a.data4[i] != b.data4[i]) return a.data4[i] < b.data4[i];
  return false;
}

// Reads "6f628f7a-b972-4929-83da-c3c16ac0022f" (36 characters, hexadecimal in any case) at compile time.
// Another shape gives a Guid of unspecified value.
constexpr Guid ParseGuid(const char (&text)[37]) noexcept {
  std::uint8_t digits[32] = {};
  int count = 0;
  for (int i = 0; i < 36 && count < 32; ++i) {
    const char c = text[i];
    if (c >= '0' && c <= '9') digits[count++] = static_cast<std::uint8_t>(c - '0');
    if (c >= 'a' && c <= 'f') digits[count++] = static_cast<std::uint8_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') digits[count++] = static_cast<std::uint8_t>(c - 'A' + 10);
  }
  Guid id{};
  for (int i = 0; i < 8; ++i) id.data1 = (id.data1 << 4) | digits[i];
  for (int i = 8; i < 12; ++i) id.data2 = static_cast<std::uint16_t>((id.data2 << 4) | digits[i]);
  for (int i = 12; i < 16; ++i) id.data3 = static_cast<std::uint16_t>((id.data3 << 4) | digits[i]);
  for (int i = 0; i < 8; ++i)
    id.data4[i] = static_cast<std::uint8_t>((digits[16 + 2 * i] << 4) | digits[17 + 2 * i]);
  return id;
}

}  // namespace qv
