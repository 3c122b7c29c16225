// Dates and times: their texts on the wire, and counts of milliseconds as scripts have them. All functions
// are pure and thread-safe.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qv::devservice {

// Read a text. They return false when it has another form or is not a day of the calendar, and ignore white
// space around it. The milliseconds count from 1970 in UTC; a text without a zone is UTC.
//   ParseDate      "2024-03-05", also with a zone, which changes nothing: a day has no time to shift
//   ParseTime      "10:15:30.7Z"; the result is on 1 January 1970, whatever the zone
//   ParseDateTime  "2024-03-05T10:15:30.7Z"; the result is in the years 1 to 9999
// Zones are "Z" and "+hh:mm" or "-hh:mm" up to 14 hours. "24:00:00" is the start of the next day.
// Up to three digits after the point COUNT milliseconds, as clients write them: ".7" is 7 ms and not 700. Of
// more digits, which no such client writes, the first three count.
bool ParseDate(std::string_view text, std::int64_t& milliseconds);
bool ParseTime(std::string_view text, std::int64_t& milliseconds);
bool ParseDateTime(std::string_view text, std::int64_t& milliseconds);

// Whether the moment is in the years 1 to 9999; false for NaN.
bool IsDateInRange(double milliseconds);

// The forms of XML Schema, in UTC and with three digits: "2024-03-05", "10:15:30.007Z",
// "2024-03-05T10:15:30.007Z". The moment has to be in range.
std::string FormatDate(std::int64_t milliseconds);
std::string FormatTime(std::int64_t milliseconds);
std::string FormatDateTime(std::int64_t milliseconds);

}  // namespace qv::devservice
