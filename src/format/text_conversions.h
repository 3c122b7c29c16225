// Dates and times between XML text and the values of hosts, in the lexical forms of XML Schema Datatypes. A
// host's value is a serial date (qvscriptwells/serial_date.h); DateTimeValue is the intermediate form.
//
// Numbers are read like atoi and atof, so junk after a number is never an error. Failure: EQvException with
// code 0 and the messages below, or those of EncodeDate, EncodeTime, DecodeDate and DecodeTime. Independent
// of the locale. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

constexpr std::u16string_view kDatePattern = u"yyyy-MM-dd";
constexpr std::u16string_view kTimePattern = u"HH:mm:ss.SSS";
constexpr std::u16string_view kNegativeZonePattern = u"-HH:mm";
constexpr std::u16string_view kPositiveZonePattern = u"+HH:mm";
constexpr std::u16string_view kDateTimePattern = u"yyyy-MM-ddTHH:mm:ss.SSS";

// The result of parsing. `Accuracy` says which fields are valid.
struct DateTimeValue {
  enum Form : std::int32_t {
    kCentury = 0,
    kYear = 1,
    kMonth = 2,
    kDate = 3,
    kTime = 4,
    kDateTime = 5,
    kYearMonth = 6,
  };

  std::int32_t Accuracy = kCentury;
  std::int32_t Year = 0;  // the century times 100 for kCentury
  std::int32_t Month = 0;
  std::int32_t Day = 0;
  double Time = 0;            // fraction of a day
  std::int32_t TimeZone = 0;  // offset in minutes; 0 for none and for "Z"
};

// "Expecting a full date value" for a time after an incomplete date.
DateTimeValue ParseDateTimeText(std::u16string_view text);
// "hh:mm" or "hh:mm:ss"; fractions of a second are ignored. Returns the fraction of a day. "Invalid time
// format" for a text without ":".
double ParseTimeOfDay(std::u16string_view text);
// Minutes of "+hh:mm" or "-hh:mm"; 0 for "Z" and for nothing. 24:00 is a whole day; other hours from 24 on
// fail as in EncodeTime.
std::int32_t ParseTimeZone(std::u16string_view text);
// A seconds field. "Unable to convert NaN float value" and the like for "NaN", "-0", "INF" and "-INF"; 0 for
// a text with an exponent and no point.
double ParseSeconds(std::u16string_view text);

// "Unable to convert a value with the given accuracy" for all forms but date, time, date and time. Only whole
// days of the offset count, since servers send local times: an offset of an hour changes nothing.
double DateTimeToSerial(const DateTimeValue& value);
// ParseDateTimeText, then DateTimeToSerial.
double ParseSerialDate(std::u16string_view text);

// "2024-03-05", "10:15:30.7Z" (the 7 are milliseconds), "+1:30" for an offset. "Invalid value" for a year
// with month and for an unknown form.
WideString WriteDateTimeValue(const DateTimeValue& value);
// The same written to `place`, which has room for kLongestPoint units: ten numbers of at most 20 places and
// the marks between them.
constexpr std::size_t kLongestPoint = 256;
std::u16string_view WriteDateTimeValue(const DateTimeValue& value, char16_t* place);

// Copies a text of the XML library with a given length. Empty for null. "Failed to allocate string".
WideString DomStringToWide(const char16_t* units, std::size_t length);

}  // namespace qv
