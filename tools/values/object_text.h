// Values that are objects: durations, URLs and tables.
#pragma once

#include <optional>
#include <string>

#include "qvscriptwells/record_list.h"
#include "qvscriptwells/variant.h"
#include "tools/values/duration_scan.h"

namespace qv::cli {

// A duration in the form of ScanDuration. Throws Failure (kLocal), whose message is the reason alone, for any
// other text, and for a duration that would arrive changed, such as 1000000 seconds; digits of the seconds
// after the sixth are ignored.
Variant ParseDuration(const std::string& text);

// The fields of the value's object; nothing if it is not a duration.
std::optional<DurationFields> ReadDuration(const Variant& value);
// Whether a count of a duration is negative, which means that it did not fit 16 bits. A count that wrapped
// around to a positive one is not detected.
bool HasWrappedCount(const Variant& value);

struct UrlFields {
  std::string url;
  std::string caption;
};
// Nothing if the value is not a URL.
std::optional<UrlFields> ReadUrl(const Variant& value);

// The value's table; null if it is not one.
IRecordListPtr AsRecordList(const Variant& value);

// The text of a duration as it is sent, or the link of a URL; empty for other values.
std::string ObjectText(const Variant& value);

// "duration", "url", "recordlist", or "object" for any other.
const char* ObjectType(const Variant& value);

}  // namespace qv::cli
