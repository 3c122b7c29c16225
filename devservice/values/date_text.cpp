#include "devservice/values/date_text.h"

#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::int64_t kFirstMoment = -62135596800000;      // 0001-01-01T00:00:00Z
constexpr std::int64_t kAfterLastMoment = 253402300800000;  // 10000-01-01T00:00:00Z
constexpr int kGreatestOffset = 14 * 60;

struct Day {
  int year;
  int month;
  int day;
};

bool IsLeapYear(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int DaysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

// Days from 1 January of the year 1 to that of another, year 1 or later.
std::int64_t DaysBeforeYear(int year) {
  const int whole = year - 1;
  return std::int64_t{365} * whole + whole / 4 - whole / 100 + whole / 400;
}

std::int64_t DaysSince1970(const Day& date) {
  std::int64_t days = DaysBeforeYear(date.year) + date.day - 1;
  for (int month = 1; month < date.month; ++month) days += DaysInMonth(date.year, month);
  return days - DaysBeforeYear(1970);
}

Day DayOf(std::int64_t daysSince1970) {
  std::int64_t left = daysSince1970 + DaysBeforeYear(1970);
  // A year of 366 days puts this never too late, and at most a few years too early.
  int year = static_cast<int>(left / 366) + 1;
  while (DaysBeforeYear(year + 1) <= left) ++year;
  left -= DaysBeforeYear(year);
  int month = 1;
  for (; left >= DaysInMonth(year, month); ++month) left -= DaysInMonth(year, month);
  return {year, month, static_cast<int>(left) + 1};
}

bool ReadDay(TextScanner& text, std::int64_t& days) {
  Day date{};
  const bool shaped = text.TakeNumber(4, date.year) && text.Take('-') && text.TakeNumber(2, date.month) &&
                      text.Take('-') && text.TakeNumber(2, date.day);
  if (!shaped || date.year < 1 || date.month < 1 || date.month > 12) return false;
  if (date.day < 1 || date.day > DaysInMonth(date.year, date.month)) return false;
  days = DaysSince1970(date);
  return true;
}

// The first three digits as a number: clients do not fill the milliseconds with zeros.
bool ReadMilliseconds(TextScanner& text, int& milliseconds) {
  milliseconds = 0;
  if (!text.Take('.')) return true;
  const std::string_view digits = text.TakeDigits();
  for (const char digit : digits.substr(0, 3)) milliseconds = milliseconds * 10 + (digit - '0');
  return !digits.empty();
}

bool ReadClock(TextScanner& text, std::int64_t& result) {
  int hour = 0;
  int minute = 0;
  int second = 0;
  int milliseconds = 0;
  const bool shaped = text.TakeNumber(2, hour) && text.Take(':') && text.TakeNumber(2, minute) &&
                      text.Take(':') && text.TakeNumber(2, second) && ReadMilliseconds(text, milliseconds);
  if (!shaped || minute > 59 || second > 59) return false;
  result = hour * kHour + minute * kMinute + second * kSecond + milliseconds;
  return result <= kDay;
}

// The zone's distance from UTC; none means UTC. It has to end the text.
bool ReadZone(TextScanner& text, std::int64_t& offset) {
  offset = 0;
  if (text.Rest().empty() || text.Rest() == "Z") return true;
  const bool west = text.Take('-');
  if (!west && !text.Take('+')) return false;
  int hours = 0;
  int minutes = 0;
  if (!text.TakeNumber(2, hours) || !text.Take(':') || !text.TakeNumber(2, minutes)) return false;
  if (!text.Rest().empty() || minutes > 59 || hours * 60 + minutes > kGreatestOffset) return false;
  offset = (hours * 60 + minutes) * (west ? -kMinute : kMinute);
  return true;
}

std::int64_t TimeOfDay(std::int64_t milliseconds) {
  return ((milliseconds % kDay) + kDay) % kDay;
}

std::string Filled(std::int64_t value, std::size_t width) {
  const std::string digits = std::to_string(value);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

}  // namespace

bool ParseDate(std::string_view text, std::int64_t& milliseconds) {
  TextScanner scanner(Trim(text));
  std::int64_t days = 0;
  std::int64_t offset = 0;
  if (!ReadDay(scanner, days) || !ReadZone(scanner, offset)) return false;
  milliseconds = days * kDay;
  return true;
}

bool ParseTime(std::string_view text, std::int64_t& milliseconds) {
  TextScanner scanner(Trim(text));
  std::int64_t clock = 0;
  std::int64_t offset = 0;
  if (!ReadClock(scanner, clock) || !ReadZone(scanner, offset)) return false;
  milliseconds = TimeOfDay(clock - offset);
  return true;
}

bool ParseDateTime(std::string_view text, std::int64_t& milliseconds) {
  TextScanner scanner(Trim(text));
  std::int64_t days = 0;
  std::int64_t clock = 0;
  std::int64_t offset = 0;
  if (!ReadDay(scanner, days) || !scanner.Take('T')) return false;
  if (!ReadClock(scanner, clock) || !ReadZone(scanner, offset)) return false;
  milliseconds = days * kDay + clock - offset;
  return milliseconds >= kFirstMoment && milliseconds < kAfterLastMoment;
}

bool IsDateInRange(double milliseconds) {
  return milliseconds >= static_cast<double>(kFirstMoment) &&
         milliseconds < static_cast<double>(kAfterLastMoment);
}

std::string FormatDate(std::int64_t milliseconds) {
  const Day date = DayOf((milliseconds - TimeOfDay(milliseconds)) / kDay);
  return Filled(date.year, 4) + "-" + Filled(date.month, 2) + "-" + Filled(date.day, 2);
}

std::string FormatTime(std::int64_t milliseconds) {
  const std::int64_t clock = TimeOfDay(milliseconds);
  return Filled(clock / kHour, 2) + ":" + Filled(clock / kMinute % 60, 2) + ":" +
         Filled(clock / kSecond % 60, 2) + "." + Filled(clock % kSecond, 3) + "Z";
}

std::string FormatDateTime(std::int64_t milliseconds) {
  return FormatDate(milliseconds) + "T" + FormatTime(milliseconds);
}

}  // namespace qv::devservice
