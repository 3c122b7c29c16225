#include "qvscriptwells/serial_date.h"

#include <cmath>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"

namespace qv {
namespace {

constexpr double kDaysTo1970 = 25569.0;  // from 30 December 1899
constexpr int kDaysToYearOne = 693594;
constexpr double kSecondsOfDay = 86400.0;
constexpr double kMillisecondsOfDay = 86400000.0;
// Bounds in whole days around the calendar's range, within which the arithmetic below cannot overflow.
constexpr double kLeastDay = -700000.0;
constexpr double kGreatestDay = 3000000.0;

constexpr int kDaysOfMonth[2][12] = {{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
                                     {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}};

constexpr int kDaysBeforeMonth[2][12] = {{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334},
                                         {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335}};

bool IsLeapYear(int year) noexcept {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

bool IsDayOfCalendar(int year, int month, int day) noexcept {
  return year > 0 && year < 10000 && month > 0 && month < 13 && day > 0 &&
         day <= kDaysOfMonth[IsLeapYear(year) ? 1 : 0][month - 1];
}

[[noreturn]] void RefuseDecode() {
  throw EQvException(u"Invalid argument to date decode");
}

// The year of a day, counted from 1 March of the year 0. Years begin in March here, so the leap day is the
// last one.
struct MarchYear {
  int year;
  int dayOfYear;  // from 0
};

MarchYear MarchYearOf(int day) noexcept {
  const int era = day / 146097;  // 400 years
  const int rest = day % 146097;
  const int year = (rest - rest / 1460 + rest / 36524 - rest / 146096) / 365;
  return {era * 400 + year, rest - (365 * year + year / 4 - year / 100)};
}

}  // namespace

double EncodeDate(std::int16_t year, std::int16_t month, std::int16_t day) {
  if (!IsDayOfCalendar(year, month, day)) throw EQvException(u"Invalid argument to date encode");
  const int dayOfYear = kDaysBeforeMonth[IsLeapYear(year) ? 1 : 0][month - 1] + day;
  const int before = year - 1;
  const int days = before * 365 + before / 4 - before / 100 + before / 400 + dayOfYear - kDaysToYearOne;
  return days;
}

double EncodeTime(std::int16_t hour, std::int16_t minute, std::int16_t second, std::int16_t millisecond) {
  if (hour >= 24 || minute >= 60 || second >= 60 || millisecond >= 1000)
    throw EQvException(messages::kTimeEncode);
  const int seconds = (hour * 60 + minute) * 60 + second;
  return (seconds * 1000.0 + millisecond) / kMillisecondsOfDay;
}

CalendarDate DecodeDate(double serialDate) {
  if (!(serialDate > kLeastDay && serialDate < kGreatestDay)) RefuseDecode();
  const double seconds = std::floor((serialDate - kDaysTo1970) * kSecondsOfDay + 0.5);
  const auto daysFrom1970 = static_cast<int>(std::floor(seconds / kSecondsOfDay));
  const int fromMarch = daysFrom1970 + 719468;  // 1 March of the year 0
  if (fromMarch < 306) RefuseDecode();          // before the year 1
  const MarchYear at = MarchYearOf(fromMarch);
  const int month = (5 * at.dayOfYear + 2) / 153;  // from March
  const int year = at.year + (month >= 10 ? 1 : 0);
  if (year > 9999) RefuseDecode();
  return {static_cast<std::int16_t>(year), static_cast<std::int16_t>(month < 10 ? month + 3 : month - 9),
          static_cast<std::int16_t>(at.dayOfYear - (153 * month + 2) / 5 + 1)};
}

ClockTime DecodeTime(double serialDate) {
  if (!std::isfinite(serialDate)) throw EQvException(u"Invalid argument to time decode");
  const double fraction = serialDate - std::trunc(serialDate);
  const double rounded = fraction * 24.0 * 60.0 * 60.0 * 1000.0 + 0.5;
  const auto milliseconds = static_cast<std::int32_t>(rounded);
  const std::int32_t minutes = milliseconds / 60000;
  const std::int32_t rest = milliseconds % 60000;
  return {static_cast<std::int16_t>(minutes / 60), static_cast<std::int16_t>(minutes % 60),
          static_cast<std::int16_t>(rest / 1000), static_cast<std::int16_t>(rest % 1000)};
}

}  // namespace qv
