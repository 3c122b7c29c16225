// A single value as text, JSON, CSV or a table. For tables: record_list_output.h.
#pragma once

#include <string>

#include "qvscriptwells/variant.h"
#include "tools/options.h"

namespace qv::cli {

// The type's name: "int", "string", "empty", "null", ...; "unknown" for a tag without one. A VT_DATE is
// "time", "date" or "datetime" by its value.
std::string TypeName(const Variant& value);

// The bare value as UTF-8; empty for a value that has no text. Numbers have the fewest digits that read back
// to the same number. Dates, times and durations are ISO 8601; a VT_DATE that is none is its number.
std::string ValueText(const Variant& value);

// Whether there is a value at all: not for an empty one, null, a text or object that is null, and what the
// program knows no form for.
bool HasValue(const Variant& value);

// The bare value as JSON: null, true, a number or a string.
std::string ValueJsonText(const Variant& value);

// The whole output with its line end. Text: the bare value. JSON: {"type":"int","value":42,"tag":22}, where a
// long that other readers would round, NaN and the infinities ("NaN", "INF", "-INF") are strings. A date is
// always a string and has its "serial" number besides, a duration its counts, a URL its "caption". Table: one
// row. CSV: the head "value" and one field, `nullText` for no value (csv_text.h).
std::string FormatAnswer(OutputFormat format, const Variant& value, const std::string& nullText = "");

}  // namespace qv::cli
