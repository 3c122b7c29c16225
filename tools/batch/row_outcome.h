// What became of the call of a row.
#pragma once

#include <cstdint>
#include <string>

namespace qv::cli {

enum class Fate : std::uint8_t {
  kUnsent,   // no call, or its request surely never left
  kDone,     // an answer came
  kFailed,   // the call ended with an error, and is not made again
  kUnknown,  // the request left, and no answer came: the script may have run, or may run still
};

struct RowOutcome {
  Fate fate = Fate::kUnsent;
  std::string text{};  // kDone: the answer in the form of the results; else a message
};

}  // namespace qv::cli
