// Dates and times as people write them: the forms of ISO 8601, on the side of the command line stricter than
// the library, which takes anything that begins well.
#pragma once

#include <optional>
#include <string>

namespace qv::cli {

// Each returns the serial date (qvscriptwells/serial_date.h), and throws Failure (kLocal) with the reason
// alone for another form, for a day or time that does not exist, and for a value that would arrive as another
// one. "YYYY-MM-DD", years 1 to 9999.
double ParseDate(const std::string& text);
// "hh:mm" or "hh:mm:ss", the latter with up to three digits behind a '.'. A "Z" at the end says nothing,
// since values travel without zone; for the same reason other offsets are refused.
double ParseTime(const std::string& text);
// A date, "T" and a time.
double ParseDateTime(const std::string& text);

// What the library calls the value on the wire: "time" when its whole part is 0, "date" at midnight, else
// "datetime".
const char* SerialDateType(double serial);

// What people call it: the same, but "datetime" on the day before day 0, whose whole part is 0 as well.
const char* SerialDateForm(double serial);

// The text of what SerialDateForm says, such as "2024-03-05T10:15:30"; milliseconds only when there are some.
// Before day 0 the time of day counts forward from its day. Nothing for a value that is no day of the years 1
// to 9999 or no time of day.
std::optional<std::string> SerialDateText(double serial);

// The same with date and time of day on every day: "2024-03-05T00:00:00" at midnight, "1899-12-30T10:15:30"
// on day 0.
std::optional<std::string> SerialDateTimeText(double serial);

}  // namespace qv::cli
