// Texts in the columns of a terminal.
#pragma once

#include <cstddef>
#include <string>

namespace qv::cli {

// How many columns a table gives to the text: as many as its characters take in the locale of LC_CTYPE, four
// for each byte that is shown as an escape, six for each format character (unsafe_characters.h).
std::size_t ShownWidth(const std::string& text);

// The text, if it fits into `width` columns (1 at least); else its beginning with a sign that more is there:
// an ellipsis, "~" where the locale has none.
std::string CutToWidth(const std::string& text, std::size_t width);

}  // namespace qv::cli
