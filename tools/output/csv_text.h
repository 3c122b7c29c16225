// Texts as fields of CSV (RFC 4180).
#pragma once

#include <string>

namespace qv::cli {

// The field for the only text of its line. It is quoted, with its quotes doubled, if it is empty (readers
// skip empty lines), holds a comma, a quote or a line end, begins or ends with a blank, or equals `nullText`:
// an unquoted `nullText` always means no value. A text that a spreadsheet would read as a formula is not
// changed.
std::string CsvOnlyField(const std::string& text, const std::string& nullText);

// Whether the text is allowed as `nullText`: valid UTF-8 that needs no quotes.
bool IsCsvNull(const std::string& text);

}  // namespace qv::cli
