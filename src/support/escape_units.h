// Which 16-bit units the XML escape replaces, and how to get past the others fast.
#pragma once

#include <cstddef>
#include <string_view>

namespace qv {

// What becomes of one unit: the text written for it, empty when it stands as it is.
std::u16string_view XmlEntity(char16_t unit) noexcept;
// The number of units at the start of `text` that stand as they are.
std::size_t PlainRun(std::u16string_view text) noexcept;

}  // namespace qv
