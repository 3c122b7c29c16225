// SPDX-License-Identifier: Apache-2.0
// The types of values that C++ has no type for. All are plain data, can be compared and printed, and have a text in
// the form of ISO 8601. Parse is strict and throws ConversionError; so do conversions that would lose something.
// Values are sent and read without a time zone; std::chrono time points are taken as UTC. An answer can be on the day
// before or after the years 1 to 9999 (of a zone of one day): it cannot be sent.
#pragma once

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <tuple>

#include "scriptwells/error.h"

namespace scriptwells {

// A day of the proleptic Gregorian calendar, years 1 to 9999.
//   On the wire: day 0 (1899-12-30) is sent as a time, since the value alone decides the type.
struct SCRIPTWELLS_API Date {
  int year = 1899, month = 12, day = 30;

  static Date Parse(std::string_view text);  // "2024-03-05"
  auto Parts() const noexcept { return std::tie(year, month, day); }
  std::string ToString() const;
};

// A time of day, to the millisecond.
//   On the wire: milliseconds are written without leading zeros (7 ms as ".7"); answers arrive in whole seconds.
struct SCRIPTWELLS_API Time {
  int hour = 0, minute = 0, second = 0, millisecond = 0;

  static Time Parse(std::string_view text);  // "10:15", "10:15:30", "10:15:30.5", with or without a "Z"
  auto Parts() const noexcept { return std::tie(hour, minute, second, millisecond); }
  std::string ToString() const;  // "10:15:30", with ".500" unless that is 0
};

// As long as the years 1 to 9999.
using TimePoint = std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds>;

// A day and a time of day.
//   On the wire: at midnight it is sent as a date, and on day 0 as a time. It cannot be sent on 1899-12-29
//   (but at midnight) nor in the last half second of a day. Of a zone in an answer only whole days count.
struct SCRIPTWELLS_API DateTime {
  Date date;
  Time time;

  static DateTime Parse(std::string_view text);  // "2024-03-05T10:15:30"
  auto Parts() const noexcept { return std::tie(date, time); }
  std::string ToString() const;

  // Rounds down to the millisecond. Throws ConversionError outside the years 1 to 9999.
  static DateTime From(TimePoint point);
  template <class D> static DateTime From(std::chrono::time_point<std::chrono::system_clock, D> point) {
    const std::chrono::duration<double> seconds = point.time_since_epoch();
    const bool isNear = seconds.count() > -1e12 && seconds.count() < 1e12;  // or it could overflow
    return From(isNear ? std::chrono::floor<std::chrono::milliseconds>(point) : TimePoint::max());
  }
  TimePoint ToTimePoint() const;  // throws ConversionError for a day or time that does not exist
};

// A duration in the units of xsd:duration. All counts have one sign.
//   On the wire: counts up to 32767, and 6 significant digits of the seconds. Larger counts arrive changed.
struct SCRIPTWELLS_API Duration {
  bool negative = false;
  int years = 0, months = 0, days = 0, hours = 0, minutes = 0;
  double seconds = 0;

  static Duration Parse(std::string_view text);  // "P1Y2M3DT4H5M6.5S", "-P1D"
  auto Parts() const noexcept { return std::tie(negative, years, months, days, hours, minutes, seconds); }
  std::string ToString() const;  // as it is sent: without units that are 0, "P0" for none

  // Days, hours, minutes and seconds. Throws ConversionError for more than 32767 days.
  static Duration From(std::chrono::milliseconds span);
  // Throws ConversionError if there are years or months, whose lengths vary, or a part of a millisecond.
  std::chrono::milliseconds ToMilliseconds() const;
};

// An address with a caption. It comes in answers only.
//   On the wire: a URL arrives without both; addresses in a table may be texts (see Column).
struct SCRIPTWELLS_API Link {
  std::string url;
  std::string caption;

  auto Parts() const noexcept { return std::tie(url, caption); }
  std::string ToString() const { return url; }
};

// Types with Parts() are compared part by part ("PT60M" is not "PT1H").
template <class T, class = decltype(std::declval<const T&>().Parts())> bool operator==(const T& a, const T& b) {
  return a.Parts() == b.Parts();
}
template <class T, class = decltype(std::declval<const T&>().Parts())> bool operator!=(const T& a, const T& b) {
  return a.Parts() != b.Parts();
}
template <class T, class = decltype(std::declval<const T&>().Parts())> bool operator<(const T& a, const T& b) {
  return a.Parts() < b.Parts();
}
// Everything with ToString is printed as that.
template <class T, class = decltype(std::declval<const T&>().ToString())>
std::ostream& operator<<(std::ostream& out, const T& value) {
  return out << value.ToString();
}

}  // namespace scriptwells
