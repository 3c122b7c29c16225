#include "tools/values/duration_scan.h"

#include <charconv>
#include <string_view>

#include "tools/report/failure.h"

namespace qv::cli {

namespace {

constexpr std::int64_t kMostOfAUnit = INT16_MAX;
// So that a number of any length stays short in memory and in messages.
constexpr std::size_t kLongestDuration = 200;

struct UnitRow {
  char letter;
  std::int16_t DurationFields::*field;  // null for the seconds
  const char* name;
};

constexpr UnitRow kDateUnits[] = {{'Y', &DurationFields::years, "years"},
                                  {'M', &DurationFields::months, "months"},
                                  {'D', &DurationFields::days, "days"}};
constexpr UnitRow kTimeUnits[] = {{'H', &DurationFields::hours, "hours"},
                                  {'M', &DurationFields::minutes, "minutes"},
                                  {'S', nullptr, "seconds"}};

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

[[noreturn]] void RefuseShape(const std::string& text) {
  Refuse("'" + text + "' is not a duration (such as P1DT2H, or -P1Y2M3DT4H5M6.5S with all its units)");
}

std::size_t CountDigits(std::string_view text, std::size_t from) {
  std::size_t end = from;
  while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
  return end - from;
}

// Digits, or digits on both sides of a '.'; empty when there is no such number.
std::string_view NumberAtStart(std::string_view rest) {
  const std::size_t whole = CountDigits(rest, 0);
  if (whole == 0 || whole >= rest.size() || rest[whole] != '.') return rest.substr(0, whole);
  const std::size_t fraction = CountDigits(rest, whole + 1);
  return fraction == 0 ? std::string_view() : rest.substr(0, whole + 1 + fraction);
}

std::int16_t ReadCount(const std::string& text, std::string_view number, const UnitRow& unit) {
  std::int64_t count = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), count);
  if (result.ec == std::errc() && result.ptr != number.data() + number.size())
    Refuse("'" + text + "' has a fraction of its " + unit.name + "; only seconds may have one");
  if (result.ec != std::errc() || count > kMostOfAUnit)
    Refuse("'" + text + "' has more than 32767 " + unit.name);
  return static_cast<std::int16_t>(count);
}

// Reads units in their order until the part ends; false for anything else, or when there is none.
bool ReadPart(const std::string& text, std::string_view rest, const UnitRow (&units)[3],
              DurationFields& fields) {
  const UnitRow* unit = units;
  if (rest.empty()) return false;
  while (!rest.empty()) {
    const std::string_view number = NumberAtStart(rest);
    if (number.empty() || number.size() == rest.size()) return false;
    while (unit != units + 3 && unit->letter != rest[number.size()]) ++unit;
    if (unit == units + 3) return false;
    if (unit->field != nullptr)
      fields.*unit->field = ReadCount(text, number, *unit);
    else
      std::from_chars(number.data(), number.data() + number.size(), fields.seconds);
    ++unit;
    rest.remove_prefix(number.size() + 1);
  }
  return true;
}

}  // namespace

DurationFields ScanDuration(const std::string& text) {
  if (text.size() > kLongestDuration) Refuse("a duration of more than 200 characters");
  DurationFields fields;
  std::string_view rest = text;
  fields.negative = !rest.empty() && rest.front() == '-';
  if (fields.negative) rest.remove_prefix(1);
  if (rest == "P0") return fields;
  if (rest.empty() || rest.front() != 'P') RefuseShape(text);
  rest.remove_prefix(1);
  const std::size_t clock = rest.find('T');
  const std::string_view date = rest.substr(0, clock);
  const bool hasClock = clock != std::string_view::npos;
  if ((!date.empty() || !hasClock) && !ReadPart(text, date, kDateUnits, fields)) RefuseShape(text);
  if (hasClock && !ReadPart(text, rest.substr(clock + 1), kTimeUnits, fields)) RefuseShape(text);
  return fields;
}

}  // namespace qv::cli
