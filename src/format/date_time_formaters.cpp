#include "format/date_time_formaters.h"

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

// Digits and marks, none of which the XML escape would touch.
WideString Written(const DateTimeValue& value) {
  return WriteDateTimeValue(value);
}

}  // namespace

Variant FormaterDate::ReadValue(const XmlNode& node) {
  return ReadSerialDate(node);
}

WideString FormaterDate::WriteValue(const Variant& value) {
  return Written(DayOf(value.Data().date));
}

Variant FormaterDateTime::ReadValue(const XmlNode& node) {
  return ReadSerialDate(node);
}

WideString FormaterDateTime::WriteValue(const Variant& value) {
  const double serialDate = value.Data().date;
  DateTimeValue point = DayOf(serialDate);
  point.Accuracy = DateTimeValue::kDateTime;
  point.Time = serialDate - static_cast<std::int32_t>(serialDate);
  return Written(point);
}

Variant FormaterTime::ReadValue(const XmlNode& node) {
  return ReadSerialDate(node);
}

// Whole days stay in it; the time of day is all that is written.
WideString FormaterTime::WriteValue(const Variant& value) {
  DateTimeValue time;
  time.Accuracy = DateTimeValue::kTime;
  time.Time = value.Data().date;
  return Written(time);
}

}  // namespace qv
