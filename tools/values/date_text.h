// Dates and times in the forms of ISO 8601. Parsing is strict, while the library accepts any text with a
// valid start.
#pragma once

#include <optional>
#include <string>

namespace qv::cli {

// Each parser returns the serial date (qvscriptwells/serial_date.h). Throws Failure (kLocal), whose message
// is the reason alone, for another form, for a day or time that does not exist, and for a value that would
// arrive changed.

// "YYYY-MM-DD", years 1 to 9999.
double ParseDate(const std::string& text);
// "hh:mm" or "hh:mm:ss", the latter with up to three digits after a '.'. Values are sent without a time zone,
// so a "Z" at the end is ignored and other offsets are rejected.
double ParseTime(const std::string& text);
// A date, "T" and a time.
double ParseDateTime(const std::string& text);

// The type that the library sends: "time" when its whole part is 0, "date" at midnight, else
// "datetime".
const char* SerialDateType(double serial);

// The type to show: the same, but "datetime" on the day before day 0, whose whole part is 0 as well.
const char* SerialDateForm(double serial);

// The text in the form of SerialDateForm, such as "2024-03-05T10:15:30", with milliseconds unless they are 0.
// Before day 0 the time of day counts forward from the start of its day. Nothing for a value outside the
// years 1 to 9999.
std::optional<std::string> SerialDateText(double serial);

// The same, always with date and time: "2024-03-05T00:00:00" at midnight, "1899-12-30T10:15:30" on day 0.
std::optional<std::string> SerialDateTimeText(double serial);

}  // namespace qv::cli
