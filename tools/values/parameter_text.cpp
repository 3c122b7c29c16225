#include "tools/values/parameter_text.h"

#include <utf8.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/serial_date.h"
#include "tools/report/failure.h"
#include "tools/system/local_files.h"
#include "tools/values/date_text.h"
#include "tools/values/object_text.h"
#include "tools/values/wire_characters.h"

namespace qv::cli {

namespace {

struct TypeRow {
  const char* name;
  // Throws Failure whose message is the reason alone, such as "'x' is not a whole number".
  Variant (*parse)(const TypeRow& row, const std::string& text);
  std::int64_t least = 0;  // of whole numbers
  std::int64_t greatest = 0;
};

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

[[noreturn]] void RefuseRange(const TypeRow& row, const std::string& text) {
  Refuse(text + " is out of range for " + row.name + " (" + std::to_string(row.least) + " to " +
         std::to_string(row.greatest) + ")");
}

std::int64_t ParseWhole(const TypeRow& row, const std::string& text) {
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  if (result.ec == std::errc::invalid_argument || result.ptr != end)
    Refuse("'" + text + "' is not a whole number");
  if (result.ec == std::errc::result_out_of_range || value < row.least || value > row.greatest)
    RefuseRange(row, text);
  return value;
}

Variant ParseByte(const TypeRow& row, const std::string& text) {
  return Variant::FromByte(static_cast<std::int8_t>(ParseWhole(row, text)));
}

Variant ParseShort(const TypeRow& row, const std::string& text) {
  return Variant::FromShort(static_cast<std::int16_t>(ParseWhole(row, text)));
}

Variant ParseInt(const TypeRow& row, const std::string& text) {
  return Variant::FromInt(static_cast<std::int32_t>(ParseWhole(row, text)));
}

Variant ParseLong(const TypeRow& row, const std::string& text) {
  return Variant::FromLong(ParseWhole(row, text));
}

Variant ParseBoolean(const TypeRow&, const std::string& text) {
  if (text == "true" || text == "1") return Variant::FromBool(true);
  if (text == "false" || text == "0") return Variant::FromBool(false);
  Refuse("'" + text + "' is not a boolean (true or false)");
}

// Servers do not agree on a text for infinities and NaN.
void CheckNumber(const TypeRow& row, const std::string& text, const std::from_chars_result& result,
                 bool finite) {
  const bool whole = result.ptr == text.data() + text.size();
  if (result.ec == std::errc::invalid_argument || !whole) Refuse("'" + text + "' is not a number");
  if (result.ec == std::errc::result_out_of_range) Refuse(text + " is out of range for " + row.name);
  if (!finite) Refuse("'" + text + "' is not a finite number");
}

Variant ParseFloat(const TypeRow& row, const std::string& text) {
  float value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  CheckNumber(row, text, result, std::isfinite(value));
  return Variant::FromFloat(value);
}

Variant ParseDouble(const TypeRow& row, const std::string& text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  CheckNumber(row, text, result, std::isfinite(value));
  return Variant::FromDouble(value);
}

Variant ParseString(const TypeRow&, const std::string& text) {
  return Variant::FromString(FromUtf8(text));
}

Variant ParseDateParameter(const TypeRow&, const std::string& text) {
  return Variant::FromDate(ParseDate(text));
}

Variant ParseTimeParameter(const TypeRow&, const std::string& text) {
  return Variant::FromDate(ParseTime(text));
}

Variant ParseDateTimeParameter(const TypeRow&, const std::string& text) {
  return Variant::FromDate(ParseDateTime(text));
}

Variant ParseDurationParameter(const TypeRow&, const std::string& text) {
  return ParseDuration(text);
}

Variant ParseFileParameter(const TypeRow&, const std::string& text) {
  return Variant::FromObject(CreateAttachedFile(FromUtf8(CheckForLibrary(text, "file"))).get());
}

constexpr TypeRow kTypes[] = {
    {"byte", ParseByte, INT8_MIN, INT8_MAX},
    {"short", ParseShort, INT16_MIN, INT16_MAX},
    {"int", ParseInt, INT32_MIN, INT32_MAX},
    {"long", ParseLong, INT64_MIN, INT64_MAX},
    {"boolean", ParseBoolean},
    {"float", ParseFloat},
    {"double", ParseDouble},
    {"string", ParseString},
    {"date", ParseDateParameter},
    {"time", ParseTimeParameter},
    {"datetime", ParseDateTimeParameter},
    {"duration", ParseDurationParameter},
    {"file", ParseFileParameter},
};

// Types that only answers have.
struct AnswerOnlyRow {
  const char* name;
  const char* reason;
};

constexpr char kNoTable[] =
    "a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a string";

constexpr AnswerOnlyRow kAnswerOnly[] = {
    {"url", "a URL cannot be sent as a parameter; send its text as a string"},
    {"table", kNoTable},
    {"recordlist", kNoTable},
};

const TypeRow& FindType(const std::string& name) {
  for (const TypeRow& row : kTypes)
    if (name == row.name) return row;
  for (const AnswerOnlyRow& row : kAnswerOnly)
    if (name == row.name) Refuse(row.reason);
  Refuse("unknown type '" + name + "' (known: " + KnownParameterTypes() + ")");
}

// Whether the text with 6 significant digits reads back as another number.
bool LosesDigits(float value) {
  char text[64];
  float back = 0;
  const char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6).ptr;
  std::from_chars(text, end, back);
  return back != value;
}

bool LosesDigits(double value) {
  char text[64];
  double back = 0;
  const char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6).ptr;
  std::from_chars(text, end, back);
  return back != value;
}

bool LosesDigits(const Variant& value) {
  if (value.Tag() == VT_R4) return LosesDigits(value.Data().fltVal);
  if (value.Tag() == VT_R8) return LosesDigits(value.Data().dblVal);
  const std::optional<DurationFields> duration = ReadDuration(value);
  return duration && LosesDigits(duration->seconds);
}

// The library sends the count of milliseconds after the point, without leading zeros.
std::string MillisecondNote(int milliseconds) {
  return "travels with '." + std::to_string(milliseconds) + "' for its " + std::to_string(milliseconds) +
         " milliseconds, which a server may read as a decimal fraction";
}

std::vector<std::string> NotesOn(const TypeRow& type, const Variant& value) {
  std::vector<std::string> notes;
  if (LosesDigits(value)) notes.emplace_back("travels with 6 significant digits");
  if (value.Tag() != VT_DATE) return notes;
  const double serial = value.Data().date;
  const std::string travels = SerialDateType(serial);
  if (travels != type.name) notes.push_back("travels as " + travels);
  const int milliseconds = DecodeTime(serial).millisecond;
  if (milliseconds > 0 && milliseconds < 100) notes.push_back(MillisecondNote(milliseconds));
  return notes;
}

// `text` is the value as it was given. Only a string can hold such characters.
void AddCharacterNotes(ScriptParameter& parameter, const std::string& text) {
  const std::string ofName = RefusedCharacterNote(parameter.name);
  if (!ofName.empty()) parameter.notes.push_back("has a name that " + ofName);
  if (parameter.value.Tag() != VT_BSTR) return;
  const std::string ofValue = RefusedCharacterNote(text);
  if (!ofValue.empty()) parameter.notes.push_back(ofValue);
}

// Types to try for a value without a type, in this order. A file cannot be recognised.
constexpr const char* kGuesses[] = {"int",  "long", "double",   "boolean",
                                    "date", "time", "datetime", "duration"};
constexpr std::size_t kLongestExample = 40;

bool IsOfType(const std::string& text, const char* name) {
  try {
    const TypeRow& type = FindType(name);
    type.parse(type, text);
    return true;
  } catch (const Failure&) {
    return false;
  }
}

std::string GuessedType(const std::string& text) {
  for (const char* name : kGuesses)
    if (IsOfType(text, name)) return name;
  return "string";
}

bool IsTypeName(const std::string& text) {
  return std::any_of(std::begin(kTypes), std::end(kTypes),
                     [&](const TypeRow& row) { return text == row.name; });
}

// "a=int:5" for "a=5".
std::string Example(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == 0 || equals == std::string::npos || text.size() > kLongestExample) return "a=int:5";
  const std::string name = text.substr(0, equals);
  const std::string value = text.substr(equals + 1);
  if (name.find(':') != std::string::npos || IsTypeName(value)) return "a=int:5";
  return name + "=" + GuessedType(value) + ":" + value;
}

}  // namespace

ScriptParameter ParseParameter(const std::string& text) {
  if (!utf8::is_valid(text.begin(), text.end())) Refuse("a parameter is not valid UTF-8");
  const std::size_t equals = text.find('=');
  const std::size_t colon = equals == std::string::npos ? equals : text.find(':', equals + 1);
  if (colon == std::string::npos || equals == 0)
    Refuse("parameter '" + text + "' is not of the form name=type:value, such as " + Example(text));
  ScriptParameter parameter;
  parameter.name = text.substr(0, equals);
  try {
    const TypeRow& type = FindType(text.substr(equals + 1, colon - equals - 1));
    parameter.value = type.parse(type, text.substr(colon + 1));
    parameter.notes = NotesOn(type, parameter.value);
    AddCharacterNotes(parameter, text.substr(colon + 1));
  } catch (const Failure& failure) {
    Refuse("parameter '" + parameter.name + "': " + failure.Message());
  }
  return parameter;
}

std::string KnownParameterTypes() {
  std::string names;
  for (const TypeRow& row : kTypes) names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

bool IsFileParameter(const Variant& value) {
  const IAttachedFilePtr file = As<IAttachedFile>(value.Object());
  return file != nullptr;
}

}  // namespace qv::cli
