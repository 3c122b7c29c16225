// The proleptic Gregorian calendar, of any year of 16 bits: an answer can lie a little outside of what can be
// sent.
#pragma once

#include <cstdint>
#include <string>

#include "scriptwells/types.h"

namespace scriptwells {

// Whether there is such a day, in any year of 16 bits.
bool IsDay(const Date& date) noexcept;
// The same, in the years 1 to 9999.
bool IsDayOfCalendar(const Date& date) noexcept;
bool IsTimeOfDay(const Time& time) noexcept;

// Throw ConversionError for a value that these find not to exist. `name` is its text in quotes.
[[noreturn]] void RefuseDay(const std::string& name);
[[noreturn]] void RefuseTime(const std::string& name);

// Days since 1899-12-30. The date must be a day.
std::int64_t DayNumber(const Date& date) noexcept;
// The day of that number, which must be in a year of 16 bits.
Date DayOf(std::int64_t number) noexcept;

// Of a time of day.
std::int64_t MillisecondsOf(const Time& time) noexcept;
Time TimeOf(std::int64_t millisecondsOfDay) noexcept;

}  // namespace scriptwells
