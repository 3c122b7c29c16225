#include "tools/values/date_text.h"

#include <cmath>
#include <cstdio>
#include <string_view>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/serial_date.h"
#include "tools/report/failure.h"

namespace qv::cli {

namespace {

constexpr char kDateShape[] = "a date (YYYY-MM-DD)";
constexpr char kTimeShape[] = "a time (hh:mm or hh:mm:ss, with up to 3 digits after a '.')";
constexpr char kDateTimeShape[] = "a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)";

[[noreturn]] void Refuse(const std::string& text, const std::string& reason) {
  throw Failure(ExitStatus::kLocal, "'" + text + "' " + reason);
}

[[noreturn]] void RefuseShape(const std::string& text, const char* shape) {
  Refuse(text, std::string("is not ") + shape);
}

bool TakeCharacter(std::string_view& rest, char wanted) {
  if (rest.empty() || rest.front() != wanted) return false;
  rest.remove_prefix(1);
  return true;
}

// Takes exactly `count` digits, of which there are four at most.
bool TakeDigits(std::string_view& rest, std::size_t count, std::int16_t& value) {
  if (rest.size() < count) return false;
  int number = 0;
  for (const char c : rest.substr(0, count)) {
    if (c < '0' || c > '9') return false;
    number = number * 10 + (c - '0');
  }
  value = static_cast<std::int16_t>(number);
  rest.remove_prefix(count);
  return true;
}

bool TakeDate(std::string_view& rest, CalendarDate& date) {
  return TakeDigits(rest, 4, date.year) && TakeCharacter(rest, '-') && TakeDigits(rest, 2, date.month) &&
         TakeCharacter(rest, '-') && TakeDigits(rest, 2, date.day);
}

// One to three digits: tenths, hundredths or thousandths.
bool TakeFraction(std::string_view& rest, std::int16_t& millisecond) {
  std::int16_t weight = 100;
  std::int16_t digit = 0;
  if (rest.empty()) return false;
  for (; weight > 0 && TakeDigits(rest, 1, digit); weight = static_cast<std::int16_t>(weight / 10))
    millisecond = static_cast<std::int16_t>(millisecond + digit * weight);
  return weight < 100;
}

bool TakeTime(std::string_view& rest, ClockTime& time) {
  if (!TakeDigits(rest, 2, time.hour) || !TakeCharacter(rest, ':') || !TakeDigits(rest, 2, time.minute))
    return false;
  if (!TakeCharacter(rest, ':')) return true;
  if (!TakeDigits(rest, 2, time.second)) return false;
  return !TakeCharacter(rest, '.') || TakeFraction(rest, time.millisecond);
}

// `text` is the whole value, for messages; `rest` is its part with the time.
ClockTime ReadTime(const std::string& text, std::string_view rest, const char* shape) {
  ClockTime time{};
  if (!TakeTime(rest, time)) RefuseShape(text, shape);
  if (!rest.empty() && (rest.front() == '+' || rest.front() == '-'))
    Refuse(text, "has an offset, but values travel without zone; write the time alone");
  TakeCharacter(rest, 'Z');
  if (!rest.empty()) RefuseShape(text, shape);
  return time;
}

double Encode(const std::string& text, const CalendarDate& date) {
  try {
    return EncodeDate(date.year, date.month, date.day);
  } catch (const EQvException&) {
    Refuse(text, "names no day of the calendar of the years 1 to 9999");
  }
}

double Encode(const std::string& text, const ClockTime& time) {
  try {
    return EncodeTime(time.hour, time.minute, time.second, time.millisecond);
  } catch (const EQvException&) {
    Refuse(text, "names no time of day (00:00 to 23:59:59.999)");
  }
}

bool IsSame(const CalendarDate& a, const CalendarDate& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day;
}

bool IsSame(const ClockTime& a, const ClockTime& b) {
  return a.hour == b.hour && a.minute == b.minute && a.second == b.second && a.millisecond == b.millisecond;
}

// As the library writes it: a negative "time" counts backwards, a "datetime" counts from the start of its
// day.
ClockTime TimeOnTheWire(double serial, const CalendarDate& date) {
  const bool isFromItsDay = serial < 0 && std::trunc(serial) != 0;
  return DecodeTime(isFromItsDay ? serial - EncodeDate(date.year, date.month, date.day) : serial);
}

// The library rounds to the second before it looks for the day.
bool ArrivesAs(double serial, const CalendarDate& date, const ClockTime& time) {
  try {
    return IsSame(DecodeDate(serial), date) && IsSame(TimeOnTheWire(serial, date), time);
  } catch (const EQvException&) {
    return false;
  }
}

std::string DateText(const CalendarDate& date) {
  char text[32];
  static_cast<void>(std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.year, date.month, date.day));
  return text;
}

std::string TimeText(const ClockTime& time) {
  char text[48];
  static_cast<void>(std::snprintf(text, sizeof text, "%02d:%02d:%02d", time.hour, time.minute, time.second));
  if (time.millisecond == 0) return text;
  char fraction[16];
  static_cast<void>(std::snprintf(fraction, sizeof fraction, ".%03d", time.millisecond));
  return std::string(text) + fraction;
}

// The whole part of a value on the day before day 0 is 0, as on day 0: -0.25 is on that day.
bool IsDayBeforeZero(double serial) {
  return serial < 0 && std::trunc(serial) == 0;
}

std::optional<std::string> DayZeroText(double serial) {
  const ClockTime time = DecodeTime(serial);
  if (time.hour == 24) return std::nullopt;
  return TimeText(time);
}

struct PointTexts {
  std::string date;
  std::string time;
};

// Days are counted down to the one on which the value lies, also before day 0.
PointTexts CalendarTexts(double serial) {
  double day = std::floor(serial);
  ClockTime time = DecodeTime(serial - day);
  if (time.hour == 24) {
    time = ClockTime{};
    day += 1;
  }
  return {DateText(DecodeDate(day)), TimeText(time)};
}

std::string CalendarText(double serial) {
  const PointTexts point = CalendarTexts(serial);
  return serial == std::trunc(serial) ? point.date : point.date + "T" + point.time;
}

}  // namespace

double ParseDate(const std::string& text) {
  std::string_view rest = text;
  CalendarDate date{};
  if (!TakeDate(rest, date) || !rest.empty()) RefuseShape(text, kDateShape);
  return Encode(text, date);
}

double ParseTime(const std::string& text) {
  return Encode(text, ReadTime(text, text, kTimeShape));
}

double ParseDateTime(const std::string& text) {
  std::string_view rest = text;
  CalendarDate date{};
  if (!TakeDate(rest, date) || !TakeCharacter(rest, 'T')) RefuseShape(text, kDateTimeShape);
  const ClockTime time = ReadTime(text, rest, kDateTimeShape);
  const double serial = Encode(text, date) + Encode(text, time);
  if (!ArrivesAs(serial, date, time))
    Refuse(text,
           "would arrive as another one: no time of day travels on 1899-12-29, nor in the last half second "
           "of a day; send a string");
  return serial;
}

const char* SerialDateType(double serial) {
  const double whole = std::trunc(serial);
  if (whole == 0) return "time";
  return serial == whole ? "date" : "datetime";
}

const char* SerialDateForm(double serial) {
  return IsDayBeforeZero(serial) ? "datetime" : SerialDateType(serial);
}

std::optional<std::string> SerialDateText(double serial) {
  try {
    const bool isDayZero = std::trunc(serial) == 0 && !IsDayBeforeZero(serial);
    return isDayZero ? DayZeroText(serial) : CalendarText(serial);
  } catch (const EQvException&) {
    return std::nullopt;
  }
}

std::optional<std::string> SerialDateTimeText(double serial) {
  try {
    const PointTexts point = CalendarTexts(serial);
    return point.date + "T" + point.time;
  } catch (const EQvException&) {
    return std::nullopt;
  }
}

}  // namespace qv::cli
