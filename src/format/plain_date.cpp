#include "format/plain_date.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "qvscriptwells/serial_date.h"
#include "text/ascii.h"

namespace qv {
namespace {

constexpr std::size_t kDay = 10;              // "2024-03-05"
constexpr std::size_t kDayAndClock = 19;      // "2024-03-05T10:15:30"
constexpr std::size_t kOffset = 6;            // "+01:30"
constexpr std::ptrdiff_t kMostFraction = 13;  // with more, "59.99..." could be the next minute
constexpr std::int16_t kTooLarge = 100;

// kTooLarge when one of both is no digit.
std::int16_t TwoDigits(std::u16string_view text, std::size_t at) noexcept {
  if (!IsAsciiDigit(text[at]) || !IsAsciiDigit(text[at + 1])) return kTooLarge;
  return static_cast<std::int16_t>((text[at] - u'0') * 10 + (text[at + 1] - u'0'));
}

// Empty when what follows the clock does not begin with a fraction in the usual form, or with none.
std::optional<std::u16string_view> WithoutFraction(std::u16string_view text) noexcept {
  if (text.empty() || text.front() != u'.') return text;
  const auto* const end = std::find_if_not(text.begin() + 1, text.end(), IsAsciiDigit<char16_t>);
  const std::ptrdiff_t digits = end - text.begin() - 1;
  if (digits < 1 || digits > kMostFraction) return std::nullopt;
  return text.substr(static_cast<std::size_t>(digits) + 1);
}

// An offset below 24 hours, which servers send for times that are local all the same.
bool IsPlainZone(std::u16string_view zone) noexcept {
  if (zone.empty() || zone == u"Z") return true;
  return zone.size() == kOffset && (zone[0] == u'+' || zone[0] == u'-') && TwoDigits(zone, 1) < 24 &&
         zone[3] == u':' && TwoDigits(zone, 4) < 60;
}

// The fraction of a day.
std::optional<double> PlainTime(std::u16string_view text) {
  if (text.size() < kDayAndClock || text[10] != u'T' || text[13] != u':' || text[16] != u':')
    return std::nullopt;
  const std::int16_t hour = TwoDigits(text, 11);
  const std::int16_t minute = TwoDigits(text, 14);
  const std::int16_t second = TwoDigits(text, 17);
  if (hour >= 24 || minute >= 60 || second >= 60) return std::nullopt;
  const std::optional<std::u16string_view> zone = WithoutFraction(text.substr(kDayAndClock));
  if (!zone || !IsPlainZone(*zone)) return std::nullopt;
  return EncodeTime(hour, minute, second, 0);
}

}  // namespace

std::optional<double> ReadPlainDate(std::u16string_view text) {
  if (text.size() < kDay || text[4] != u'-' || text[7] != u'-') return std::nullopt;
  const std::int16_t century = TwoDigits(text, 0);
  const std::int16_t year = TwoDigits(text, 2);
  const std::int16_t month = TwoDigits(text, 5);
  const std::int16_t day = TwoDigits(text, 8);
  if (std::max({century, year, month, day}) == kTooLarge) return std::nullopt;
  const std::optional<double> time = text.size() == kDay ? 0.0 : PlainTime(text);
  if (!time) return std::nullopt;
  return EncodeDate(static_cast<std::int16_t>(century * 100 + year), month, day) + *time;
}

}  // namespace qv
