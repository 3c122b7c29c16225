#include "face/values/sent_form.h"

#include <algorithm>
#include <cmath>

#include "face/text/failures.h"
#include "face/values/civil_day.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/serial_date.h"
#include "scriptwells/value.h"

namespace scriptwells {

namespace {

bool IsSame(const qv::CalendarDate& a, const Date& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day;
}

bool IsSame(const qv::ClockTime& a, const Time& b) {
  return a.hour == b.hour && a.minute == b.minute && a.second == b.second && a.millisecond == b.millisecond;
}

// As the library writes it: a negative "time" counts backwards, a "datetime" counts from the start of its
// day.
qv::ClockTime TimeOnTheWire(double serial, const Date& date) {
  const bool isFromItsDay = serial < 0 && std::trunc(serial) != 0;
  return qv::DecodeTime(isFromItsDay ? serial - SerialNumber(date) : serial);
}

// The library rounds to the second before it looks for the day.
bool ArrivesAs(double serial, const DateTime& point) {
  try {
    return IsSame(qv::DecodeDate(serial), point.date) &&
           IsSame(TimeOnTheWire(serial, point.date), point.time);
  } catch (const qv::EQvException&) {
    return false;
  }
}

// In an answer, a count that did not fit 16 bits is negative.
bool HasOnlyCounts(const Duration& duration) {
  const auto [least, greatest] =
      std::minmax({duration.years, duration.months, duration.days, duration.hours, duration.minutes});
  return least >= 0 && greatest <= INT16_MAX && !(duration.seconds < 0);
}

// A text with an exponent is not a valid duration. The last digits of the seconds are not sent.
bool Arrives(const Duration& duration, const std::string& sent) {
  try {
    Duration back = Duration::Parse(sent);
    back.seconds = duration.seconds;
    return back == duration;
  } catch (const ConversionError&) {
    return false;
  }
}

}  // namespace

double SerialNumber(const Date& date) {
  return static_cast<double>(DayNumber(date));
}

// The same sum as the library's, so that a number that it read is found again.
double SerialNumber(const Time& time) {
  return static_cast<double>(MillisecondsOf(time)) / 86'400'000.0;
}

double SerialNumber(const DateTime& point) {
  return SerialNumber(point.date) + SerialNumber(point.time);
}

void CheckSent(const DateTime& point, const std::string& text) {
  const bool exists = IsDayOfCalendar(point.date) && IsTimeOfDay(point.time);
  if (exists && ArrivesAs(SerialNumber(point), point)) return;
  const std::string name = "'" + (text.empty() ? point.ToString() : text) + "'";
  if (!IsDayOfCalendar(point.date)) RefuseDay(name);
  if (!IsTimeOfDay(point.time)) RefuseTime(name);
  RefuseConversion(name +
                   " would arrive as another one: no time of day travels on 1899-12-29, nor in the last half "
                   "second of a day; send a string");
}

void CheckSent(const Duration& duration, const std::string& text) {
  const std::string sent = duration.ToString();
  if (!HasOnlyCounts(duration))
    RefuseConversion("the duration " + sent + " has a count that is negative or more than 32767");
  if (!Arrives(duration, sent))
    RefuseConversion((text.empty() ? "a duration" : "'" + text + "'") + " would travel as '" + sent +
                     "'; write it in other units");
}

double SerialOf(const Value& value) {
  if (value.Is<Time>()) {
    const Time time = value.As<Time>();
    if (!IsTimeOfDay(time)) RefuseTime("'" + time.ToString() + "'");
    return SerialNumber(time);
  }
  const auto point = value.As<DateTime>();
  static_cast<void>(point.ToTimePoint());  // throws for one that does not exist
  return SerialNumber(point);
}

}  // namespace scriptwells
