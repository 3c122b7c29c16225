// Texts as fields of CSV (RFC 4180).
#pragma once

#include <string>
#include <string_view>

namespace scriptwells {

// The field for a text. It is quoted, with its quotes doubled, if it holds a comma, a quote or a line end,
// begins or ends with a blank, or equals `null`: an unquoted `null` always means no value. A text that a
// spreadsheet would read as a formula is not changed.
std::string CsvField(const std::string& text, std::string_view null);

// The same for the only field of its line: an empty text is always quoted, since readers skip empty lines.
std::string CsvOnlyField(const std::string& text, std::string_view null);

// Throws ConversionError unless the text is allowed as `null`: valid UTF-8 that needs no quotes.
void CheckCsvNull(std::string_view null);

}  // namespace scriptwells
