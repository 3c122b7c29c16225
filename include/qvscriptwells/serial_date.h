// SPDX-License-Identifier: Apache-2.0
// Serial dates: what a VT_DATE holds. Days since 30 December 1899 as a double; the fraction is the time of
// day. No time zone. The calendar is Gregorian on the whole range, even before its adoption.
//
// Failure: EQvException with code 0 and the message given below. Threads: any.
#pragma once

#include <cstdint>

namespace qv {

struct CalendarDate {
  std::int16_t year;   // 1 to 9999
  std::int16_t month;  // 1 to 12
  std::int16_t day;    // 1 to 31
};

// All fields of a negative time are zero or negative.
struct ClockTime {
  std::int16_t hour;  // 24 when the time rounds up to the next day's start
  std::int16_t minute;
  std::int16_t second;
  std::int16_t millisecond;
};

// Whole days. "Invalid argument to date encode": not a calendar day of the years 1 to 9999.
double EncodeDate(std::int16_t year, std::int16_t month, std::int16_t day);
// The fraction of a day. "Invalid argument to time encode": an hour from 24, a minute or second from 60, a
// millisecond from 1000 on. Negative fields are allowed and subtract.
double EncodeTime(std::int16_t hour, std::int16_t minute, std::int16_t second, std::int16_t millisecond);

// The day of the value plus half a second: in the last half second of a day this is already the next day,
// while DecodeTime still returns the time of the old one. "Invalid argument to date decode": outside the
// years 1 to 9999, or not a number.
CalendarDate DecodeDate(double serialDate);
// The time of day of the value plus half a millisecond. Before day 0 (30 December 1899) the fraction and so
// the time are negative; add 24 hours for the time on the day that DecodeDate returns. "Invalid argument to
// time decode": not a finite number.
ClockTime DecodeTime(double serialDate);

}  // namespace qv
