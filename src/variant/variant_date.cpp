#include "variant/variant_date.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "text/ascii.h"
#include "variant/variant_decimal.h"

namespace qv {
namespace {

constexpr int kLeastDay = -657434;     // 1 January 100
constexpr int kGreatestDay = 2958465;  // 31 December 9999
constexpr int kSecondsOfDay = 86400;
constexpr int kDaysBefore0 = 693899;  // from 1 March of the year 0 to day 0
constexpr int kDaysOf400Years = 146097;

struct Day {
  int year = 0;
  int month = 0;
  int day = 0;
};

bool IsLeap(int year) noexcept {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int DaysOfMonth(const Day& date) noexcept {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return date.month == 2 && IsLeap(date.year) ? 29 : kDays[date.month - 1];
}

bool IsOfCalendar(const Day& date) noexcept {
  return date.year >= 100 && date.year <= 9999 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
         date.day <= DaysOfMonth(date);
}

// Years begin in March here, so the leap day is the last one.
int SerialDay(const Day& date) noexcept {
  const int year = date.month > 2 ? date.year : date.year - 1;
  const int month = (date.month + 9) % 12;
  return year * 365 + year / 4 - year / 100 + year / 400 + (153 * month + 2) / 5 + date.day - 1 -
         kDaysBefore0;
}

Day DayOf(int serialDay) noexcept {
  const int days = serialDay + kDaysBefore0;
  const int rest = days % kDaysOf400Years;
  const int yearOf400 = (rest - rest / 1460 + rest / 36524 - rest / 146096) / 365;
  const int dayOfYear = rest - (365 * yearOf400 + yearOf400 / 4 - yearOf400 / 100);
  const int month = (5 * dayOfYear + 2) / 153;
  const int year = days / kDaysOf400Years * 400 + yearOf400;
  return {month < 10 ? year : year + 1, month < 10 ? month + 3 : month - 9,
          dayOfYear - (153 * month + 2) / 5 + 1};
}

std::u16string DayText(int serialDay) {
  const Day date = DayOf(serialDay);
  char text[40];
  const int length = std::snprintf(text, sizeof text, "%d/%d/%04d", date.month, date.day, date.year);
  return {text, text + length};
}

std::u16string ClockText(int seconds) {
  const int hour = seconds / 3600;
  char text[40];
  const int length = std::snprintf(text, sizeof text, "%d:%02d:%02d %s", (hour + 11) % 12 + 1,
                                   seconds / 60 % 60, seconds % 60, hour < 12 ? "AM" : "PM");
  return {text, text + length};
}

// Reads a date from the front of a text, piece by piece.
class DateReader {
 public:
  explicit DateReader(std::u16string_view text) noexcept : rest_(WithoutBlanks(text)) {}

  bool Read(double* serialDate) noexcept {
    int day = 0;
    int seconds = 0;
    const bool startsWithDay = IsDayNext();
    if (startsWithDay && !ReadDay(&day)) return false;
    if (startsWithDay && rest_.empty()) {
      *serialDate = day;
      return true;
    }
    SkipBlanks();
    if (!ReadClock(&seconds) || !rest_.empty()) return false;
    const double time = static_cast<double>(seconds) / kSecondsOfDay;
    *serialDate = day < 0 ? day - time : day + time;
    return true;
  }

 private:
  bool IsDayNext() const noexcept {
    const std::size_t mark = rest_.find_first_of(u"/-:");
    return mark != std::u16string_view::npos && rest_[mark] != u':';
  }

  bool Take(char16_t unit) noexcept {
    if (rest_.empty() || rest_.front() != unit) return false;
    rest_.remove_prefix(1);
    return true;
  }

  // Reads a number of one to `most` digits. Returns the count of digits, 0 for none or too many.
  int Number(int most, int* value) noexcept {
    *value = 0;
    int digits = 0;
    for (; !rest_.empty() && IsAsciiDigit(rest_.front()); rest_.remove_prefix(1)) {
      if (++digits > most) return 0;
      *value = *value * 10 + (rest_.front() - u'0');
    }
    return digits;
  }

  bool ReadDay(int* serialDay) noexcept {
    int fields[3];
    const int firstDigits = Number(4, &fields[0]);
    const char16_t mark = Take(u'/') ? u'/' : u'-';
    if (firstDigits == 0 || (mark == u'-' && !Take(mark))) return false;
    if (Number(2, &fields[1]) == 0 || !Take(mark)) return false;
    const int lastDigits = Number(4, &fields[2]);
    if (lastDigits == 0) return false;
    const bool startsWithYear = firstDigits > 2;
    if (startsWithYear && lastDigits > 2) return false;
    const Day date = startsWithYear ? Day{fields[0], fields[1], fields[2]}
                                    : Day{YearOf(fields[2], lastDigits), fields[0], fields[1]};
    if (!IsOfCalendar(date)) return false;
    *serialDay = SerialDay(date);
    return true;
  }

  static int YearOf(int value, int digits) noexcept {
    if (digits > 2) return value;
    return value < 30 ? 2000 + value : 1900 + value;
  }

  bool ReadClock(int* seconds) noexcept {
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (Number(2, &hour) == 0 || !Take(u':') || Number(2, &minute) == 0) return false;
    if (Take(u':') && Number(2, &second) == 0) return false;
    if (!ReadHalf(&hour) || hour > 23 || minute > 59 || second > 59) return false;
    *seconds = (hour * 60 + minute) * 60 + second;
    return true;
  }

  // "AM" or "PM", if the text continues.
  bool ReadHalf(int* hour) noexcept {
    SkipBlanks();
    if (rest_.empty()) return true;
    const bool isAfternoon = rest_.front() == u'p' || rest_.front() == u'P';
    const bool isMorning = rest_.front() == u'a' || rest_.front() == u'A';
    rest_.remove_prefix(1);
    if ((!isAfternoon && !isMorning) || (!Take(u'm') && !Take(u'M'))) return false;
    if (*hour < 1 || *hour > 12) return false;
    *hour = *hour % 12 + (isAfternoon ? 12 : 0);
    return true;
  }

  void SkipBlanks() noexcept { rest_ = WithoutBlanks(rest_); }

  std::u16string_view rest_;
};

}  // namespace

bool IsDate(double serialDate) noexcept {
  return serialDate > kLeastDay - 1 && serialDate < kGreatestDay + 1;
}

bool WriteDate(double serialDate, WideString* text) {
  if (!IsDate(serialDate)) return false;
  const double whole = std::trunc(serialDate);
  int day = static_cast<int>(whole);
  auto seconds = static_cast<int>(std::lround(std::fabs(serialDate - whole) * kSecondsOfDay));
  if (seconds == kSecondsOfDay) {
    seconds = 0;
    ++day;
  }
  if (day > kGreatestDay) return false;
  std::u16string written = day == 0 ? std::u16string() : DayText(day);
  if (day != 0 && seconds != 0) written += u' ';
  if (day == 0 || seconds != 0) written += ClockText(seconds);
  *text = WideString(written);
  return true;
}

bool ReadDate(std::u16string_view text, double* serialDate) noexcept {
  return DateReader(text).Read(serialDate);
}

}  // namespace qv
