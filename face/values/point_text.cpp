// Dates and times in the forms of ISO 8601. Parsing is strict, while the interfaces below take any text with
// a valid start.
#include <cstdio>
#include <string>

#include "face/text/failures.h"
#include "face/values/civil_day.h"
#include "scriptwells/types.h"

namespace scriptwells {

namespace {

constexpr char kDateShape[] = "a date (YYYY-MM-DD)";
constexpr char kTimeShape[] = "a time (hh:mm or hh:mm:ss, with up to 3 digits after a '.')";
constexpr char kDateTimeShape[] = "a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)";

std::string Quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

[[noreturn]] void RefuseShape(std::string_view text, const char* shape) {
  RefuseConversion(Quoted(text) + " is not " + shape);
}

bool TakeCharacter(std::string_view& rest, char wanted) {
  if (rest.empty() || rest.front() != wanted) return false;
  rest.remove_prefix(1);
  return true;
}

// Takes exactly `count` digits, of which there are four at most.
bool TakeDigits(std::string_view& rest, std::size_t count, int& value) {
  if (rest.size() < count) return false;
  int number = 0;
  for (const char c : rest.substr(0, count)) {
    if (c < '0' || c > '9') return false;
    number = number * 10 + (c - '0');
  }
  value = number;
  rest.remove_prefix(count);
  return true;
}

bool TakeDate(std::string_view& rest, Date& date) {
  return TakeDigits(rest, 4, date.year) && TakeCharacter(rest, '-') && TakeDigits(rest, 2, date.month) &&
         TakeCharacter(rest, '-') && TakeDigits(rest, 2, date.day);
}

// One to three digits: tenths, hundredths or thousandths.
bool TakeFraction(std::string_view& rest, int& millisecond) {
  int weight = 100;
  int digit = 0;
  if (rest.empty()) return false;
  for (; weight > 0 && TakeDigits(rest, 1, digit); weight /= 10) millisecond += digit * weight;
  return weight < 100;
}

bool TakeTime(std::string_view& rest, Time& time) {
  if (!TakeDigits(rest, 2, time.hour) || !TakeCharacter(rest, ':') || !TakeDigits(rest, 2, time.minute))
    return false;
  if (!TakeCharacter(rest, ':')) return true;
  if (!TakeDigits(rest, 2, time.second)) return false;
  return !TakeCharacter(rest, '.') || TakeFraction(rest, time.millisecond);
}

// `text` is the whole value, for messages; `rest` is its part with the time.
Time ReadTime(std::string_view text, std::string_view rest, const char* shape) {
  Time time;
  if (!TakeTime(rest, time)) RefuseShape(text, shape);
  if (!rest.empty() && (rest.front() == '+' || rest.front() == '-'))
    RefuseConversion(Quoted(text) + " has an offset, but values travel without zone; write the time alone");
  TakeCharacter(rest, 'Z');
  if (!rest.empty()) RefuseShape(text, shape);
  return time;
}

}  // namespace

Date Date::Parse(std::string_view text) {
  std::string_view rest = text;
  Date date;
  if (!TakeDate(rest, date) || !rest.empty()) RefuseShape(text, kDateShape);
  if (!IsDayOfCalendar(date)) RefuseDay(Quoted(text));
  return date;
}

Time Time::Parse(std::string_view text) {
  const Time time = ReadTime(text, text, kTimeShape);
  if (!IsTimeOfDay(time)) RefuseTime(Quoted(text));
  return time;
}

DateTime DateTime::Parse(std::string_view text) {
  std::string_view rest = text;
  DateTime point;
  if (!TakeDate(rest, point.date) || !TakeCharacter(rest, 'T')) RefuseShape(text, kDateTimeShape);
  point.time = ReadTime(text, rest, kDateTimeShape);
  if (!IsDayOfCalendar(point.date)) RefuseDay(Quoted(text));
  if (!IsTimeOfDay(point.time)) RefuseTime(Quoted(text));
  return point;
}

std::string Date::ToString() const {
  char text[48];
  static_cast<void>(std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day));
  return text;
}

std::string Time::ToString() const {
  char text[48];
  static_cast<void>(std::snprintf(text, sizeof text, "%02d:%02d:%02d", hour, minute, second));
  if (millisecond == 0) return text;
  char fraction[16];
  static_cast<void>(std::snprintf(fraction, sizeof fraction, ".%03d", millisecond));
  return std::string(text) + fraction;
}

std::string DateTime::ToString() const {
  return date.ToString() + "T" + time.ToString();
}

}  // namespace scriptwells
