// The answer of a script as text, JSON or a table.
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

// The whole output with its line end. Text: the bare value. JSON: {"type":"int","value":42,"tag":22}, where a
// long that other readers would round, NaN and the infinities ("NaN", "INF", "-INF") are strings. A date has
// its "serial" number besides, a duration its counts, a URL its "caption". Table: one row.
std::string FormatAnswer(OutputFormat format, const Variant& value);

}  // namespace qv::cli
