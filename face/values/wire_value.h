// Values of the library as values of the interfaces below, and back.
#pragma once

#include "qvscriptwells/variant.h"
#include "scriptwells/value.h"

namespace scriptwells {

// The value of an answer, or of a cell in a column of the type `columnType` (ColumnType in record_list.h; -1
// for an answer). In a column the type decides between date, time and datetime; in an answer the number does:
// day 0 is a time, midnight a date. A record list is refused: see AnswerOf. Throws Error.
Value FromWire(const qv::Variant& variant, std::int32_t columnType = -1);

// The value as it is sent. Throws ConversionError, whose message is the reason alone, for what cannot be sent
// (see Arguments).
qv::Variant ToWire(const Value& value);

}  // namespace scriptwells
