// SPDX-License-Identifier: Apache-2.0
// Conversions to and from the calendar types of C++20. For programs that are compiled as C++20 or later.
#pragma once

#include "scriptwells/types.h"

namespace scriptwells {

// Throws Error (kConversion) for a day that does not exist, or outside the years 1 to 9999.
inline Date DateFrom(std::chrono::year_month_day day) {
  const Date date{static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
                  static_cast<int>(static_cast<unsigned>(day.day()))};
  return Date::Parse(date.ToString());
}

inline std::chrono::year_month_day ToYearMonthDay(const Date& date) {
  return std::chrono::year(date.year) / date.month / date.day;
}

inline Time TimeFrom(std::chrono::hh_mm_ss<std::chrono::milliseconds> time) {
  return {static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count())};
}

inline std::chrono::hh_mm_ss<std::chrono::milliseconds> ToHhMmSs(const Time& time) {
  const int seconds = (time.hour * 60 + time.minute) * 60 + time.second;
  return std::chrono::hh_mm_ss(std::chrono::milliseconds(seconds * 1000 + time.millisecond));
}

}  // namespace scriptwells
