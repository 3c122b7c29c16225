// Dates in English texts, for conversions from and to VT_DATE.
#pragma once

#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

// Whether the value is a date of the years 100 to 9999. Before day 0 the fraction still counts forward from
// the start of the day: -1.25 is 29 December 1899 at six in the morning.
bool IsDate(double serialDate) noexcept;

// "3/5/2024 10:15:30 AM", rounded to the second; without the time at midnight, without the date on day 0.
// False: not in the years above. May throw out of memory.
bool WriteDate(double serialDate, WideString* text);

// "3/5/2024", "3/5/24", "2024-03-05", either with a time after a blank, or a time alone: "10:15", "10:15:30",
// "10:15 pm". False: another form, or no such day or time.
bool ReadDate(std::u16string_view text, double* serialDate) noexcept;

}  // namespace qv
