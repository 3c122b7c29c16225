#include "face/values/civil_day.h"

#include "face/text/failures.h"

namespace scriptwells {

namespace {

// Years are counted from 1 March, so that the leap day is the last one, and in eras of 400 years.
constexpr std::int64_t kDaysOfEra = 146097;
constexpr std::int64_t kMarchOfYearZero = -693899;  // 0000-03-01

constexpr int kDaysOfMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool IsLeapYear(int year) noexcept {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

std::int64_t EraOf(std::int64_t value, std::int64_t size) noexcept {
  return (value >= 0 ? value : value - size + 1) / size;
}

bool IsBelow(int value, int end) noexcept {
  return value >= 0 && value < end;
}

}  // namespace

bool IsDay(const Date& date) noexcept {
  if (date.year < INT16_MIN || date.year > INT16_MAX || date.month < 1 || date.month > 12) return false;
  const int leapDay = date.month == 2 && IsLeapYear(date.year) ? 1 : 0;
  return date.day >= 1 && date.day <= kDaysOfMonth[date.month - 1] + leapDay;
}

bool IsDayOfCalendar(const Date& date) noexcept {
  return date.year >= 1 && date.year <= 9999 && IsDay(date);
}

bool IsTimeOfDay(const Time& time) noexcept {
  return IsBelow(time.hour, 24) && IsBelow(time.minute, 60) && IsBelow(time.second, 60) &&
         IsBelow(time.millisecond, 1000);
}

void RefuseDay(const std::string& name) {
  RefuseConversion(name + " names no day of the calendar of the years 1 to 9999");
}

void RefuseTime(const std::string& name) {
  RefuseConversion(name + " names no time of day (00:00 to 23:59:59.999)");
}

std::int64_t DayNumber(const Date& date) noexcept {
  const std::int64_t year = date.month > 2 ? date.year : date.year - 1;
  const std::int64_t era = EraOf(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t month = date.month > 2 ? date.month - 3 : date.month + 9;  // from March
  const std::int64_t dayOfYear = (153 * month + 2) / 5 + date.day - 1;
  return era * kDaysOfEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear + kMarchOfYearZero;
}

Date DayOf(std::int64_t number) noexcept {
  const std::int64_t fromMarch = number - kMarchOfYearZero;
  const std::int64_t era = EraOf(fromMarch, kDaysOfEra);
  const std::int64_t day = fromMarch - era * kDaysOfEra;
  const std::int64_t year = (day - day / 1460 + day / 36524 - day / 146096) / 365;
  const std::int64_t dayOfYear = day - (365 * year + year / 4 - year / 100);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;  // from March
  return {static_cast<int>(era * 400 + year + (month >= 10 ? 1 : 0)),
          static_cast<int>(month < 10 ? month + 3 : month - 9),
          static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1)};
}

std::int64_t MillisecondsOf(const Time& time) noexcept {
  return ((time.hour * 60 + time.minute) * 60 + time.second) * std::int64_t{1000} + time.millisecond;
}

Time TimeOf(std::int64_t millisecondsOfDay) noexcept {
  const auto seconds = static_cast<int>(millisecondsOfDay / 1000);
  return {seconds / 3600, seconds / 60 % 60, seconds % 60, static_cast<int>(millisecondsOfDay % 1000)};
}

}  // namespace scriptwells
