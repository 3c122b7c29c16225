// Texts and numbers as JSON (RFC 8259).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace scriptwells {

// With its quotes. Bytes that are not UTF-8 become U+FFFD, and unsafe characters (unsafe_characters.h) are
// escaped, so that the text is safe to show and to log.
std::string JsonText(std::string_view text);

// NaN and infinities as a text: "NaN", "INF", "-INF".
std::string JsonNumber(double value);
// The digits of the float: 0.1, not those of the same number as a double.
std::string JsonNumber(float value);
// As a text beyond 53 bits, where a reader that keeps numbers as doubles would round it.
std::string JsonNumber(std::int64_t value);

}  // namespace scriptwells
