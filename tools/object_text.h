// Values that are objects: durations, URLs and tables.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "qvscriptwells/record_list.h"
#include "qvscriptwells/variant.h"

namespace qv::cli {

struct DurationFields {
  bool negative = false;
  std::int16_t years = 0;
  std::int16_t months = 0;
  std::int16_t days = 0;
  std::int16_t hours = 0;
  std::int16_t minutes = 0;
  double seconds = 0;
};

// "P1Y2M3DT4H5M6.5S", with "-" in front or not: one field at least, in this order, whole numbers up to 32767
// but for the seconds; also "P0". Throws Failure (kLocal) with the reason alone for anything else, and for
// what would arrive as another duration, as 1000000 seconds would; digits of the seconds beyond the sixth are
// not looked at.
Variant ParseDuration(const std::string& text);

// What the object behind the value says of itself; nothing when it is no duration, or no URL.
std::optional<DurationFields> ReadDuration(const Variant& value);
// Whether a count is negative, as none is that was sent within 16 bits. One that wrapped around to a count
// above 0 cannot be told from others.
bool HasWrappedCount(const Variant& value);
struct UrlFields {
  std::string url;
  std::string caption;
};
std::optional<UrlFields> ReadUrl(const Variant& value);

// The table behind the value; null when it is none.
IRecordListPtr AsRecordList(const Variant& value);

// The text of a duration, as it stands on the wire, or the link of a URL; empty for other values.
std::string ObjectText(const Variant& value);

// "duration", "url", "recordlist", or "object" for any other.
const char* ObjectType(const Variant& value);

}  // namespace qv::cli
