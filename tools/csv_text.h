// Texts as fields of CSV (RFC 4180).
#pragma once

#include <string>

namespace qv::cli {

// The field for a text: in quotes, its own quotes doubled, when it holds a comma, a quote or a line end,
// begins or ends with a blank, or is the text that stands for no value. A field without quotes that reads
// as `nullText` has no value therefore, and only then. What a spreadsheet would take for a formula stays as
// it is.
std::string CsvField(const std::string& text, const std::string& nullText);

// The same for the only field of its line: an empty text is in quotes always, since readers skip empty lines.
std::string CsvOnlyField(const std::string& text, const std::string& nullText);

// Whether the text can stand for no value: valid UTF-8 that needs no quotes itself.
bool IsCsvNull(const std::string& text);

}  // namespace qv::cli
