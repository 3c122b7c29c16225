// A single value as text, JSON, CSV or a table. For tables: record_list_output.h.
#pragma once

#include <string>

#include "qvscriptwells/variant.h"

namespace qv::cli {

enum class OutputFormat { kText, kJson, kTable, kCsv };

// The type's name: "int", "string", "empty", "null", ...; "unknown" for any other tag. A VT_DATE is
// "time", "date" or "datetime", depending on its value.
std::string TypeName(const Variant& value);

// The bare value as UTF-8; empty for a value without text. Numbers have the fewest digits that read back to
// the same number. Dates, times and durations are ISO 8601; a VT_DATE out of range is its number.
std::string ValueText(const Variant& value);

// False for empty, null, a null text or object, and a tag that TypeName does not know.
bool HasValue(const Variant& value);

// The bare value as JSON: null, true, a number or a string.
std::string ValueJsonText(const Variant& value);

// The whole output with its line end.
// Text: the bare value. Table: one row. CSV: the head "value" and one field, `nullText` for no value
// (csv_text.h). JSON: {"type":"int","value":42,"tag":22}. NaN, the infinities ("INF", "-INF") and a long that
// other readers would round are strings. A date is a string and also has its "serial" number, a duration its
// counts, a URL its "caption".
std::string FormatAnswer(OutputFormat format, const Variant& value, const std::string& nullText = "");

}  // namespace qv::cli
