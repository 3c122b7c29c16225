// What values become when they are sent, and which cannot be.
#pragma once

#include <string>

#include "scriptwells/types.h"

namespace scriptwells {

constexpr char kLinkIsNotSent[] = "a URL cannot be sent as a parameter; send its text as a string";
constexpr char kTableIsNotSent[] =
    "a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a string";
constexpr char kNotUtf8[] = "the text is not valid UTF-8";

// The serial number (qvscriptwells/serial_date.h) of a point that exists.
double SerialNumber(const Date& date);
double SerialNumber(const Time& time);
double SerialNumber(const DateTime& point);

// Throw ConversionError for a value that does not exist, that would arrive as another one or has no form on
// the wire. `text` is the value as it was given; empty for one that was not a text.
void CheckSent(const DateTime& point, const std::string& text = {});
void CheckSent(const Duration& duration, const std::string& text = {});

}  // namespace scriptwells
