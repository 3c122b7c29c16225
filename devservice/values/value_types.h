// The table of value types that scripts and the wire have in common. A new type is a new row here, and a new
// kind if no existing kind fits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qv::devservice {

enum class ValueKind {
  kInteger,
  kBoolean,
  kFloat,
  kDouble,
  kString,
  kDate,
  kTime,
  kDateTime,
  kDuration,
  kUrl,
};

struct ValueType {
  const char* name;        // In requests under the XML Schema namespace, and in the script API.
  const char* answerType;  // The text of xsi:type in an answer.
  ValueKind kind;
  std::int64_t least;  // Range, for integers only.
  std::int64_t greatest;
};

// The row with this exact name, or null. Rows live for the whole process.
const ValueType* FindValueType(std::string_view name);

// All rows, in the order of the table.
const ValueType* BeginValueTypes();
const ValueType* EndValueTypes();

// Checks and normalises the text of a parameter: integers and numbers in the C locale's digits, booleans as
// "true" or "false", strings as they are, dates and times in UTC, durations and links in the form of their
// writers (date_text.h, duration_text.h, url_text.h). Returns false when the text is not a value of the type.
bool NormaliseText(const ValueType& type, std::string_view text, std::string& result);

// The texts of numbers on the wire: shortest digits that read back to the same number, "INF", "-INF", "NaN".
std::string FormatDouble(double value);
std::string FormatFloat(float value);

// Reads a text that NormaliseText wrote.
std::int64_t ReadInteger(std::string_view text);
double ReadDouble(std::string_view text);

// A date, time or datetime (by kind) as milliseconds since 1970 in UTC, and back; other kinds are read as
// datetime. The moment to write has to be in the years 1 to 9999.
bool ParseMoment(ValueKind kind, std::string_view text, std::int64_t& milliseconds);
std::string FormatMoment(ValueKind kind, std::int64_t milliseconds);

}  // namespace qv::devservice
