#include "tools/options/time_span.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <string>

namespace qv::cli {

namespace {

struct Unit {
  std::string_view name;
  double seconds;
};

constexpr double kLongestLimit = 86400;

constexpr Unit kUnits[] = {{"", 1}, {"s", 1}, {"ms", 0.001}, {"m", 60}, {"h", 3600}};

std::string Plain(double seconds) {
  char text[32];
  const std::to_chars_result result = std::to_chars(text, text + sizeof(text), seconds);
  return {text, result.ptr};
}

// Replaces the text by plain seconds for CLI11. Returns an error message, or an empty text.
std::string ToSeconds(std::string& text) {
  const std::optional<double> seconds = SecondsOf(text);
  if (!seconds) return "'" + text + "' is not a time, such as 90, 1.5s or 2m";
  text = Plain(*seconds);
  return {};
}

}  // namespace

std::optional<double> SecondsOf(std::string_view text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc()) return std::nullopt;
  const std::string_view unit(result.ptr, static_cast<std::size_t>(end - result.ptr));
  for (const Unit& known : kUnits)
    if (known.name == unit) return number * known.seconds;
  return std::nullopt;
}

bool IsTimeLimit(double seconds) {
  return std::isfinite(seconds) && seconds >= 0 && seconds <= kLongestLimit;
}

CLI::Option* AddTime(CLI::App& command, const char* name, double& seconds, const char* description,
                     const char* variable) {
  return command.add_option(name, seconds, description)
      ->capture_default_str()
      ->type_name("TIME")
      ->envname(variable)
      ->transform(CLI::Validator(ToSeconds, ""));
}

}  // namespace qv::cli
