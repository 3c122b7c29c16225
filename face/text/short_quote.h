// Texts of others in messages.
#pragma once

#include <string>
#include <string_view>

namespace scriptwells {

// "'abc'": the first 40 characters, with "..." after the quote if there are more. In one line: line ends,
// tabs and unsafe characters (unsafe_characters.h) are escaped.
std::string ShortQuote(std::string_view text);

}  // namespace scriptwells
