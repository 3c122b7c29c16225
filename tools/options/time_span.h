// Times on the command line: "90", "1.5s", "2m".
#pragma once

#include <optional>
#include <string_view>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace qv::cli {

// Seconds of a decimal number with an optional unit: ms, s (the default), m or h. Nothing for any other text
// and for a number too large for a double. Infinity and NaN are left to the caller's limits.
std::optional<double> SecondsOf(std::string_view text);

// Whether a time limit in seconds is finite and between none and a day.
bool IsTimeLimit(double seconds);

// Adds an option that sets `seconds`, which must outlive `command`. `variable` is the environment variable
// that is its default; empty: none.
CLI::Option* AddTime(CLI::App& command, const char* name, double& seconds, const char* description,
                     const char* variable = "");

}  // namespace qv::cli
