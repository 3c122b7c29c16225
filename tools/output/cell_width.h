// The width of texts in the columns of a terminal.
#pragma once

#include <cstddef>
#include <string>

namespace qv::cli {

// The columns of the text in a table: those of its characters in the locale of LC_CTYPE, four for each byte
// that is escaped, six for each format character (unsafe_characters.h).
std::size_t ShownWidth(const std::string& text);

// The text, if it fits into `width` columns (at least 1); else its beginning and an ellipsis ("~" where the
// locale has no ellipsis).
std::string CutToWidth(const std::string& text, std::size_t width);

}  // namespace qv::cli
