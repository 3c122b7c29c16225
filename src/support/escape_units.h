// The 16-bit units that the XML escape replaces, and a fast way to skip the others.
#pragma once

#include <cstddef>
#include <string_view>

namespace qv {

// The replacement for one unit; empty if it stays unchanged.
std::u16string_view XmlEntity(char16_t unit) noexcept;
// The number of units at the start of `text` that stay unchanged.
std::size_t PlainRun(std::u16string_view text) noexcept;

}  // namespace qv
