// Serial dates: what a VT_DATE holds. Days since 30 December 1899 as a double, the fraction being the time of
// day; no time zone. The calendar is the Gregorian one on the whole range, also before its adoption.
//
// Failure: EQvException with code 0 and the words below. Threads: any.
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

// Whole days. "Invalid argument to date encode": no day of the calendar of the years 1 to 9999.
double EncodeDate(std::int16_t year, std::int16_t month, std::int16_t day);
// The fraction of a day. "Invalid argument to time encode": an hour from 24, a minute or second from 60, a
// millisecond from 1000 on. Negative fields are counted as they are.
double EncodeTime(std::int16_t hour, std::int16_t minute, std::int16_t second, std::int16_t millisecond);

// The day on which the value lies, half a second added first: in the last half second of a day it is the next
// one already, while DecodeTime still tells the time of the old day. "Invalid argument to date decode":
// outside the years 1 to 9999, or not a number.
CalendarDate DecodeDate(double serialDate);
// The time of day, half a millisecond added first. Before day 0 (30 December 1899) the fraction counts down
// from the value's whole part: a negative time; add 24 hours for the time of the day that DecodeDate tells.
// "Invalid argument to time decode": not a finite number.
ClockTime DecodeTime(double serialDate);

}  // namespace qv
