// Texts as fields of CSV (RFC 4180).
#pragma once

#include <string>

namespace qv::cli {

// The field for a text. It is quoted, with its quotes doubled, if it holds a comma, a quote or a line end,
// begins or ends with a blank, or equals `nullText`: an unquoted `nullText` always means no value. A text
// that a spreadsheet would read as a formula is not changed.
std::string CsvField(const std::string& text, const std::string& nullText);

// The same for the only field of its line: an empty text is always quoted, since readers skip empty lines.
std::string CsvOnlyField(const std::string& text, const std::string& nullText);

// Whether the text is allowed as `nullText`: valid UTF-8 that needs no quotes.
bool IsCsvNull(const std::string& text);

}  // namespace qv::cli
