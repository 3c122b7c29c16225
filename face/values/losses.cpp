// What sending changes.
#include <utf8.h>

#include "face/text/number_text.h"
#include "face/text/wire_characters.h"
#include "scriptwells/value.h"

namespace scriptwells {

namespace {

using Losses = std::vector<std::string>;

constexpr char kSixDigits[] = "travels with 6 significant digits";

// The library sends the count of milliseconds after the point, without leading zeros.
void AddMilliseconds(Losses& losses, const Time& time) {
  if (time.millisecond <= 0 || time.millisecond >= 100) return;
  const std::string count = std::to_string(time.millisecond);
  losses.push_back("travels with '." + count + "' for its " + count +
                   " milliseconds, which a server may read as a decimal fraction");
}

struct Finder {
  Losses operator()(float value) const { return LosesDigits(value) ? Losses{kSixDigits} : Losses(); }
  Losses operator()(double value) const { return LosesDigits(value) ? Losses{kSixDigits} : Losses(); }
  Losses operator()(const Duration& value) const { return (*this)(value.seconds); }
  Losses operator()(const std::string& value) const {
    const bool isText = utf8::is_valid(value.begin(), value.end());
    const std::string note = isText ? RefusedCharacterNote(value) : std::string();
    return note.empty() ? Losses() : Losses{note};
  }
  Losses operator()(const Date& value) const {
    return value == Date() ? Losses{"travels as time"} : Losses();
  }
  Losses operator()(const Time& value) const {
    Losses losses;
    AddMilliseconds(losses, value);
    return losses;
  }
  Losses operator()(const DateTime& value) const {
    Losses losses;
    if (value.date == Date())
      losses.emplace_back("travels as time");
    else if (value.time == Time())
      losses.emplace_back("travels as date");
    AddMilliseconds(losses, value.time);
    return losses;
  }
  // Others travel unchanged, or not at all.
  template <class T>
  Losses operator()(const T&) const {
    return {};
  }
};

}  // namespace

std::vector<std::string> LossesOnTheWire(const Value& value) {
  return value.Visit(Finder());
}

}  // namespace scriptwells
