// Values of a chosen type.
#include <cfloat>
#include <cmath>

#include "face/text/failures.h"
#include "face/text/number_text.h"
#include "face/values/whole_range.h"
#include "scriptwells/value.h"

namespace scriptwells {

namespace {

template <class T>
Value Made(const WholeRange& range, std::int64_t value) {
  if (value < range.least || value > range.greatest) RefuseRange(range, std::to_string(value));
  return static_cast<T>(value);
}

}  // namespace

void RefuseRange(const WholeRange& range, const std::string& number) {
  RefuseConversion(number + " is out of range for " + range.type + " (" + std::to_string(range.least) +
                   " to " + std::to_string(range.greatest) + ")");
}

std::int64_t Value::Signed(std::uint64_t value) {
  if (value > INT64_MAX) RefuseRange(kLongRange, std::to_string(value));
  return static_cast<std::int64_t>(value);
}

Value Byte(std::int64_t value) {
  return Made<std::int8_t>(kByteRange, value);
}

Value Short(std::int64_t value) {
  return Made<std::int16_t>(kShortRange, value);
}

Value Int(std::int64_t value) {
  return Made<std::int32_t>(kIntRange, value);
}

Value Long(std::int64_t value) {
  return value;
}

// The nearest float. Every number up to FLT_MAX has one, and NaN and infinities stay.
Value Float(double value) {
  if (std::isfinite(value) && std::abs(value) > FLT_MAX)
    RefuseConversion(NumberText(value) + " is out of range for float");
  return static_cast<float>(value);
}

Value Double(double value) {
  return value;
}

}  // namespace scriptwells
