// Durations as text, and as those of std::chrono.
#include <charconv>
#include <cmath>
#include <string>

#include "face/text/failures.h"
#include "face/text/number_text.h"
#include "scriptwells/types.h"

namespace scriptwells {

namespace {

constexpr std::int64_t kMostOfAUnit = INT16_MAX;
// So that a number of any length stays short in memory and in messages.
constexpr std::size_t kLongestDuration = 200;
constexpr double kMostSeconds = 1e15;  // that a count of milliseconds holds, with all other units

struct UnitRow {
  char letter;
  int Duration::*field;  // null for the seconds
  const char* name;
};

constexpr UnitRow kDateUnits[] = {
    {'Y', &Duration::years, "years"}, {'M', &Duration::months, "months"}, {'D', &Duration::days, "days"}};
constexpr UnitRow kTimeUnits[] = {
    {'H', &Duration::hours, "hours"}, {'M', &Duration::minutes, "minutes"}, {'S', nullptr, "seconds"}};

std::string Quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

[[noreturn]] void RefuseShape(std::string_view text) {
  RefuseConversion(Quoted(text) +
                   " is not a duration (such as P1DT2H, or -P1Y2M3DT4H5M6.5S with all its units)");
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

int ReadCount(std::string_view text, std::string_view number, const UnitRow& unit) {
  std::int64_t count = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), count);
  if (result.ec == std::errc() && result.ptr != number.data() + number.size())
    RefuseConversion(Quoted(text) + " has a fraction of its " + unit.name + "; only seconds may have one");
  if (result.ec != std::errc() || count > kMostOfAUnit)
    RefuseConversion(Quoted(text) + " has more than 32767 " + unit.name);
  return static_cast<int>(count);
}

// Reads units in their order until the part ends; false for anything else, or when there is none.
bool ReadPart(std::string_view text, std::string_view rest, const UnitRow (&units)[3], Duration& duration) {
  const UnitRow* unit = units;
  if (rest.empty()) return false;
  while (!rest.empty()) {
    const std::string_view number = NumberAtStart(rest);
    if (number.empty() || number.size() == rest.size()) return false;
    while (unit != units + 3 && unit->letter != rest[number.size()]) ++unit;
    if (unit == units + 3) return false;
    if (unit->field != nullptr)
      duration.*unit->field = ReadCount(text, number, *unit);
    else
      std::from_chars(number.data(), number.data() + number.size(), duration.seconds);
    ++unit;
    rest.remove_prefix(number.size() + 1);
  }
  return true;
}

void AppendCount(std::string& text, int count, char letter) {
  if (count != 0) text += std::to_string(count) + letter;
}

}  // namespace

Duration Duration::Parse(std::string_view text) {
  if (text.size() > kLongestDuration) RefuseConversion("a duration of more than 200 characters");
  Duration duration;
  std::string_view rest = text;
  duration.negative = !rest.empty() && rest.front() == '-';
  if (duration.negative) rest.remove_prefix(1);
  if (rest == "P0") return duration;
  if (rest.empty() || rest.front() != 'P') RefuseShape(text);
  rest.remove_prefix(1);
  const std::size_t clock = rest.find('T');
  const std::string_view date = rest.substr(0, clock);
  const bool hasClock = clock != std::string_view::npos;
  if ((!date.empty() || !hasClock) && !ReadPart(text, date, kDateUnits, duration)) RefuseShape(text);
  if (hasClock && !ReadPart(text, rest.substr(clock + 1), kTimeUnits, duration)) RefuseShape(text);
  return duration;
}

std::string Duration::ToString() const {
  std::string text = negative ? "-P" : "P";
  const std::size_t start = text.size();
  AppendCount(text, years, 'Y');
  AppendCount(text, months, 'M');
  AppendCount(text, days, 'D');
  if (hours != 0 || minutes != 0 || seconds != 0) text += 'T';
  AppendCount(text, hours, 'H');
  AppendCount(text, minutes, 'M');
  if (seconds != 0) text += SixDigits(seconds) + 'S';
  if (text.size() == start) text += '0';
  return text;
}

Duration Duration::From(std::chrono::milliseconds span) {
  using std::chrono::hours;
  using std::chrono::minutes;
  const hours end((kMostOfAUnit + 1) * 24);
  if (span <= -end || span >= end) RefuseConversion("a span of more than 32767 days");
  const std::chrono::milliseconds size = std::chrono::abs(span);
  Duration duration;
  duration.negative = span != size;
  duration.days = static_cast<int>(size / hours(24));
  duration.hours = static_cast<int>(size % hours(24) / hours(1));
  duration.minutes = static_cast<int>(size % hours(1) / minutes(1));
  duration.seconds = static_cast<double>((size % minutes(1)).count()) / 1000;
  return duration;
}

std::chrono::milliseconds Duration::ToMilliseconds() const {
  if (years != 0 || months != 0)
    RefuseConversion("the duration " + ToString() + " has years or months, whose lengths vary");
  const bool fits = std::abs(seconds) <= kMostSeconds;  // false for NaN, too
  const std::int64_t ofSeconds = fits ? std::llround(seconds * 1000) : 0;
  if (!fits || static_cast<double>(ofSeconds) / 1000 != seconds)
    RefuseConversion("the duration " + ToString() + " is no whole number of milliseconds");
  const std::chrono::milliseconds span = std::chrono::hours(std::int64_t{days} * 24 + hours) +
                                         std::chrono::minutes(minutes) + std::chrono::milliseconds(ofSeconds);
  return negative ? -span : span;
}

}  // namespace scriptwells
