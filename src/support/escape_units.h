// The 16-bit units that the XML escape replaces, and a fast way to skip the others.
#pragma once

#include <cstddef>
#include <string_view>

namespace qv {

// A unit to escape, or a null unit, ends a plain run.
constexpr bool EndsPlainRun(char16_t unit) noexcept {
  return unit == 0 || unit >= 0x7F || unit == u'"' || unit == u'&' || unit == u'\'' || unit == u'<' ||
         unit == u'>';
}
// Whether nothing ends the run; for constants.
constexpr bool IsPlain(std::u16string_view text) noexcept {
  for (const char16_t unit : text)  // NOLINT(readability-use-anyofallof): std::all_of is not constexpr
    if (EndsPlainRun(unit)) return false;
  return true;
}

// The replacement for one unit; empty if it stays unchanged.
std::u16string_view XmlEntity(char16_t unit) noexcept;
// The number of units at the start of `text` that stay unchanged.
std::size_t PlainRun(std::u16string_view text) noexcept;

}  // namespace qv
