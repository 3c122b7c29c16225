// Literals and named constants joined at compile time.
#pragma once

#include <cstddef>

namespace qv {

template <std::size_t kSize>
struct JoinedText {
  char16_t units[kSize] = {};  // with a null terminator
};

template <std::size_t... kSizes>
constexpr JoinedText<(kSizes + ...) - sizeof...(kSizes) + 1> JoinLiterals(
    const char16_t (&... literals)[kSizes]) {
  JoinedText<(kSizes + ...) - sizeof...(kSizes) + 1> joined;
  std::size_t end = 0;
  const auto append = [&](const char16_t* literal, std::size_t size) {
    for (std::size_t at = 0; at + 1 < size; ++at) joined.units[end++] = literal[at];
  };
  (append(literals, kSizes), ...);
  return joined;
}

}  // namespace qv
