// Whether an answer arrives as the server sent it (Options::strict).
#pragma once

#include <string_view>

namespace scriptwells {

// `answerXml` is the body of an answer in UTF-8 that the library has read without failure. Throws
// ConversionError for a value whose type does not arrive (long, byte, URL, a type that is not known), a
// fraction of a second, a zone that is not a whole number of days, and a count of a duration above 32767; in
// a table also names column and row (from 0). A column whose type does not arrive is refused at its first
// cell with text. Throws Error (kAnswer) if the body cannot be parsed.
void CheckStrict(std::string_view answerXml);

}  // namespace scriptwells
