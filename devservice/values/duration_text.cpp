#include "devservice/values/duration_text.h"

#include <charconv>
#include <cmath>

#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

// Reads the whole counts of one half. `found` becomes true when there is any.
bool ReadCounts(TextScanner& text, bool clock, Duration& result, bool& found) {
  for (const DurationField& field : kDurationFields) {
    TextScanner ahead = text;
    const std::string_view digits = ahead.TakeDigits();
    if (field.clock != clock || digits.empty() || !ahead.Take(field.mark)) continue;
    const char* const end = digits.data() + digits.size();
    if (std::from_chars(digits.data(), end, result.*field.count).ec != std::errc()) return false;
    text = ahead;
    found = true;
  }
  return true;
}

// Moves past a number such as "6", "6.5" or "1.23457e+07".
bool SkipNumber(TextScanner& text) {
  if (text.TakeDigits().empty()) return false;
  if (text.Take('.') && text.TakeDigits().empty()) return false;
  if (!text.Take('e') && !text.Take('E')) return true;
  if (!text.Take('+')) text.Take('-');
  return !text.TakeDigits().empty();
}

bool ReadSeconds(TextScanner& text, double& seconds, bool& found) {
  if (text.Rest().empty()) return true;
  const char* const start = text.Rest().data();
  if (!SkipNumber(text)) return false;
  const char* const end = text.Rest().data();
  if (std::from_chars(start, end, seconds).ec != std::errc() || !std::isfinite(seconds)) return false;
  found = true;
  return text.Take('S');
}

std::string FormatSeconds(double seconds) {
  char buffer[400];  // The smallest double has 326 characters without an exponent.
  return std::string(buffer,
                     std::to_chars(buffer, buffer + sizeof buffer, seconds, std::chars_format::fixed).ptr);
}

std::string FormatCounts(const Duration& duration, bool clock) {
  std::string text;
  for (const DurationField& field : kDurationFields) {
    if (field.clock != clock || duration.*field.count == 0) continue;
    text += std::to_string(duration.*field.count) + field.mark;
  }
  return text;
}

}  // namespace

bool ParseDuration(std::string_view text, Duration& result) {
  TextScanner scanner(Trim(text));
  result = Duration();
  result.negative = scanner.Take('-');
  if (!scanner.Take('P')) return false;
  if (scanner.Rest() == "0") return true;
  bool found = false;
  if (!ReadCounts(scanner, false, result, found)) return false;
  if (!scanner.Take('T')) return found && scanner.Rest().empty();
  found = false;
  return ReadCounts(scanner, true, result, found) && ReadSeconds(scanner, result.seconds, found) && found &&
         scanner.Rest().empty();
}

std::string FormatDuration(const Duration& duration) {
  const std::string date = FormatCounts(duration, false);
  std::string clock = FormatCounts(duration, true);
  if (duration.seconds != 0) clock += FormatSeconds(duration.seconds) + "S";
  const std::string sign = duration.negative ? "-P" : "P";
  if (date.empty() && clock.empty()) return sign + "0";
  return sign + date + (clock.empty() ? "" : "T" + clock);
}

}  // namespace qv::devservice
