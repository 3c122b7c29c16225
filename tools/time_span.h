// Times on the command line: "90", "1.5s", "2m".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

// Seconds of a decimal number, which may have a unit: ms, s (the default), m or h. None for anything else,
// and for what is too large for a double. Infinity and "not a number" are for the caller's limits to refuse.
std::optional<double> SecondsOf(std::string_view text);

// In milliseconds, rounded up, so that a short time never becomes none.
std::int64_t Milliseconds(double seconds);

// Adds an option whose time goes to *seconds. `variable` stands in for it.
CLI::Option* AddTime(CLI::App& command, const char* name, double& seconds, const char* words,
                     const char* variable = "");

}  // namespace qv::cli
