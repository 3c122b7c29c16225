// A single value as text, JSON, CSV or a table. For tables: table_output.h.
#pragma once

#include <string>
#include <vector>

#include "scriptwells/value.h"
#include "tools/output/output_format.h"

namespace qv::cli {

// As the protocol and the command line name it: "int", "string", "url", "recordlist", "empty", ...
std::string TypeName(const scriptwells::Value& value);

// The whole output with its line end.
// Text: the bare value. Table: one row. CSV: the head "value" and one field, `nullText` for no value.
// JSON: {"type":"int","value":42,"tag":22}. A point in time also has its "serial" number, a
// duration its counts, a URL its "caption". A point outside the years 1 to 9999 is shown as its number.
std::string FormatAnswer(OutputFormat format, const scriptwells::Value& value,
                         const std::string& nullText = "");

// One sentence for what the library does not read as it was sent, in an answer other than a table.
std::vector<std::string> LossesOf(const scriptwells::Value& answer);

// Whether a count of a duration is negative, which means that it did not fit 16 bits. A count that wrapped
// around to a positive one is not detected. False for other values.
bool HasWrappedCount(const scriptwells::Value& value);

}  // namespace qv::cli
