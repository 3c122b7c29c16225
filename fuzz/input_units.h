// The text that a fuzz target makes of its input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "qvscriptwells/wide_string.h"

namespace qv::fuzz {

// The input is UTF-8; after a first byte of 0xFF it is raw 16-bit units.
inline std::u16string UnitsOf(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || data[0] != 0xFF) {
    const WideString text = FromUtf8({reinterpret_cast<const char*>(data), size});
    return std::u16string(text.view());
  }
  std::u16string units((size - 1) / 2, u'\0');
  std::memcpy(units.data(), data + 1, units.size() * sizeof(char16_t));
  return units;
}

}  // namespace qv::fuzz
