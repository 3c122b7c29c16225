#include "format/date_time_formaters.h"

#include <algorithm>

#include "format/text_conversions.h"
#include "qvscriptwells/serial_date.h"

namespace qv {
namespace {

Variant ReadSerialDate(const XmlNode& node) {
  return Variant::FromDate(ParseSerialDate(GetNodeText(node)));
}

DateTimeValue DayOf(double serialDate) {
  const CalendarDate date = DecodeDate(serialDate);
  DateTimeValue value;
  value.Accuracy = DateTimeValue::kDate;
  value.Year = date.year;
  value.Month = date.month;
  value.Day = date.day;
  return value;
}

// The time of the day that the decoder reports. Before day 0 it counts from the start of that day, as in
// reading. In the last half second before a day, which the decoder assigns to that day, it is the day's
// start.
double TimeOfDay(double serialDate, const DateTimeValue& day) {
  if (serialDate >= 0) return serialDate - static_cast<std::int32_t>(serialDate);
  const auto start = EncodeDate(static_cast<std::int16_t>(day.Year), static_cast<std::int16_t>(day.Month),
                                static_cast<std::int16_t>(day.Day));
  return std::max(0.0, serialDate - start);
}

// Only digits and marks, which need no XML escape.
std::u16string_view Written(const DateTimeValue& value, TextPlace& place) {
  return WriteDateTimeValue(value, place.units);
}

}  // namespace

Variant FormaterDate::ReadValue(const XmlNode& node) {
  return ReadSerialDate(node);
}

std::u16string_view FormaterDate::TextOf(const Variant& value, TextPlace& place) {
  return Written(DayOf(value.Data().date), place);
}

Variant FormaterDateTime::ReadValue(const XmlNode& node) {
  return ReadSerialDate(node);
}

std::u16string_view FormaterDateTime::TextOf(const Variant& value, TextPlace& place) {
  const double serialDate = value.Data().date;
  DateTimeValue point = DayOf(serialDate);
  point.Accuracy = DateTimeValue::kDateTime;
  point.Time = TimeOfDay(serialDate, point);
  return Written(point, place);
}

Variant FormaterTime::ReadValue(const XmlNode& node) {
  return ReadSerialDate(node);
}

// Whole days stay in the value, but only the time of day is written.
std::u16string_view FormaterTime::TextOf(const Variant& value, TextPlace& place) {
  DateTimeValue time;
  time.Accuracy = DateTimeValue::kTime;
  time.Time = value.Data().date;
  return Written(time, place);
}

}  // namespace qv
