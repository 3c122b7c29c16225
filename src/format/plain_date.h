// The usual text of a day or of a point in time, read directly.
#pragma once

#include <optional>
#include <string_view>

namespace qv {

// The serial date of "2024-03-05" or "2024-03-05T10:15:30". A time may have a fraction of up to 13 digits
// after it, which is dropped, and then "Z" or an offset such as "+01:30", which changes nothing. Null for any
// other text, also for one with an impossible time: ParseSerialDate (text_conversions.h) reads those.
// EQvException of EncodeDate for an impossible day.
std::optional<double> ReadPlainDate(std::u16string_view text);

}  // namespace qv
