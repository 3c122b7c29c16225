// The whole types, with their ranges.
#pragma once

#include <cstdint>
#include <string>

namespace scriptwells {

struct WholeRange {
  const char* type;
  std::int64_t least;
  std::int64_t greatest;
};

constexpr WholeRange kByteRange = {"byte", INT8_MIN, INT8_MAX};
constexpr WholeRange kShortRange = {"short", INT16_MIN, INT16_MAX};
constexpr WholeRange kIntRange = {"int", INT32_MIN, INT32_MAX};
constexpr WholeRange kLongRange = {"long", INT64_MIN, INT64_MAX};

// Throws ConversionError: "300 is out of range for byte (-128 to 127)".
[[noreturn]] void RefuseRange(const WholeRange& range, const std::string& number);

}  // namespace scriptwells
