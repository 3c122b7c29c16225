#include "format/text_conversions.h"

#include <charconv>
#include <cstdlib>
#include <string>

#include "format/plain_date.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "qvscriptwells/serial_date.h"
#include "support/numbers.h"
#include "support/string_helpers.h"

namespace qv {
namespace {

constexpr std::size_t kNone = std::u16string_view::npos;
constexpr std::int32_t kMinutesOfDay = 24 * 60;

std::int16_t Cut(std::int32_t number) noexcept {
  return static_cast<std::int16_t>(number);
}

// Two pieces of a text; `second` begins after the mark unless stated otherwise.
struct Halves {
  std::u16string_view first;
  std::u16string_view second;
};

Halves SplitDateAndTime(std::u16string_view text) {
  const std::size_t mark = text.find(u'T');
  if (mark != kNone) return {text.substr(0, mark), text.substr(mark + 1)};
  if (text.find(u':') != kNone) return {{}, text};
  return {text, {}};
}

// The zone includes its mark. A "+" anywhere wins over a "-", and that over a "Z".
Halves SplitZone(std::u16string_view time) {
  for (const char16_t mark : {u'+', u'-', u'Z'}) {
    const std::size_t at = time.find(mark);
    if (at != kNone) return {time.substr(0, at), time.substr(at)};
  }
  return {time, {}};
}

// A minus sign is applied twice, in the number and as the sign: "-12" is the century of 1200.
void ReadCentury(std::u16string_view date, DateTimeValue& value) {
  const std::int32_t sign = date[0] == u'-' ? -1 : 1;
  value.Year = NarrowedInt(date) * sign * 100;  // three digits at most
}

void ReadMonthOfNoYear(std::u16string_view date, DateTimeValue& value) {
  if (date[2] == u'-' || date.size() < 6 || date[5] != u'-') return;
  value.Accuracy = DateTimeValue::kMonth;
  value.Month = NarrowedInt(date.substr(2, 2));
}

void ReadYearAndRest(std::u16string_view date, std::size_t dash, DateTimeValue& value) {
  value.Year = NarrowedInt(date.substr(0, dash));
  const std::u16string_view rest = date.substr(dash + 1);
  const std::size_t second = rest.find(u'-');
  value.Month = NarrowedInt(rest.substr(0, second));
  value.Accuracy = DateTimeValue::kYearMonth;
  if (second == kNone) return;
  value.Accuracy = DateTimeValue::kDate;
  value.Day = NarrowedInt(rest.substr(second + 1));
}

void ReadDatePart(std::u16string_view date, DateTimeValue& value) {
  if (date.size() < 4) return ReadCentury(date, value);
  const std::size_t dash = date.find(u'-');
  if (dash == 0) return ReadMonthOfNoYear(date, value);
  if (dash != kNone) return ReadYearAndRest(date, dash, value);
  value.Accuracy = DateTimeValue::kYear;
  value.Year = NarrowedInt(date);
}

struct ClockFields {
  std::int16_t hour;
  std::int16_t minute;
  std::int16_t second = 0;
};

// The fraction of a second is ignored, as in deployed readers.
std::int16_t WholeSeconds(std::u16string_view text) {
  const double seconds = ParseSeconds(text);
  if (!(seconds > -2147483649.0 && seconds < 2147483648.0)) throw EQvException(messages::kTimeEncode);
  return Cut(static_cast<std::int32_t>(seconds));
}

ClockFields ReadClock(std::u16string_view text) {
  const std::size_t colon = text.find(u':');
  if (colon == kNone) throw EQvException(u"Invalid time format");
  const std::int16_t hour = Cut(NarrowedInt(text.substr(0, colon)));
  const std::u16string_view rest = text.substr(colon + 1);
  const std::size_t second = rest.find(u':');
  const std::int16_t minute = Cut(NarrowedInt(rest.substr(0, second)));
  if (second == kNone) return {hour, minute};
  return {hour, minute, WholeSeconds(rest.substr(second + 1))};
}

double Encoded(const ClockFields& clock) {
  return EncodeTime(clock.hour, clock.minute, clock.second, 0);
}

std::int32_t ZoneMinutes(const ClockFields& clock) {
  if (clock.hour == 24 && clock.minute == 0 && clock.second == 0) return kMinutesOfDay;
  const ClockTime time = DecodeTime(Encoded(clock));
  return time.hour * 60 + time.minute;
}

struct RefusedNumber {
  std::u16string_view text;
  const char16_t* words;
};

constexpr RefusedNumber kRefusedNumbers[] = {{u"NaN", u"Unable to convert NaN float value"},
                                             {u"-0", u"Unable to convert -0 float value"},
                                             {u"INF", u"Unable to convert INF float value"},
                                             {u"-INF", u"Unable to convert -INF float value"}};

class PointText {
 public:
  explicit PointText(char16_t* place) noexcept : units_(place) {}
  void Add(char16_t unit) { units_[size_++] = unit; }
  // Zeros on the left up to `width`, a sign included.
  void AddPadded(std::int64_t number, std::ptrdiff_t width) {
    if (width == 2 && number >= 0 && number < 100) return AddTwoDigits(static_cast<int>(number));
    if (width == 4 && number >= 0 && number < 10000) {
      AddTwoDigits(static_cast<int>(number / 100));
      return AddTwoDigits(static_cast<int>(number % 100));
    }
    char digits[24] = {};
    const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    for (std::ptrdiff_t missing = width - (end - digits); missing > 0; --missing) Add(u'0');
    for (const char* digit = digits; digit != end; ++digit) Add(static_cast<char16_t>(*digit));
  }
  void AddNumber(std::int64_t number) { AddPadded(number, 0); }
  std::u16string_view Text() const { return {units_, size_}; }

 private:
  // A fast path for nearly all numbers.
  void AddTwoDigits(int number) {
    Add(static_cast<char16_t>(u'0' + number / 10));
    Add(static_cast<char16_t>(u'0' + number % 10));
  }

  char16_t* const units_;
  std::size_t size_ = 0;
};

void AppendDate(PointText& text, const DateTimeValue& value) {
  text.AddPadded(value.Year, 4);
  text.Add(u'-');
  text.AddPadded(value.Month, 2);
  text.Add(u'-');
  text.AddPadded(value.Day, 2);
}

void AppendZone(PointText& text, std::int64_t minutes) {
  if (minutes == 0) return text.Add(u'Z');
  text.Add(minutes < 0 ? u'-' : u'+');
  text.AddNumber(std::abs(minutes) / 60);
  text.Add(u':');
  text.AddNumber(std::abs(minutes) % 60);
}

void AppendTime(PointText& text, const DateTimeValue& value) {
  const ClockTime time = DecodeTime(value.Time);
  text.AddPadded(time.hour, 2);
  text.Add(u':');
  text.AddPadded(time.minute, 2);
  text.Add(u':');
  text.AddPadded(time.second, 2);
  text.Add(u'.');
  text.AddNumber(time.millisecond);
  AppendZone(text, value.TimeZone);
}

void AppendMonth(PointText& text, const DateTimeValue& value) {
  text.Add(u'-');
  text.Add(u'-');
  text.AddPadded(value.Month, 2);
  text.Add(u'-');
  text.Add(u'-');
}

}  // namespace

DateTimeValue ParseDateTimeText(std::u16string_view text) {
  DateTimeValue value;
  const Halves parts = SplitDateAndTime(text);
  const Halves time = SplitZone(parts.second);
  if (!parts.first.empty()) ReadDatePart(parts.first, value);
  if (time.first.empty()) return value;
  if (!parts.first.empty() && value.Accuracy != DateTimeValue::kDate)
    throw EQvException(u"Expecting a full date value");
  value.Accuracy = parts.first.empty() ? DateTimeValue::kTime : DateTimeValue::kDateTime;
  value.Time = ParseTimeOfDay(time.first);
  value.TimeZone = ParseTimeZone(time.second);
  return value;
}

double ParseTimeOfDay(std::u16string_view text) {
  return Encoded(ReadClock(text));
}

std::int32_t ParseTimeZone(std::u16string_view text) {
  if (text.empty() || text == u"Z") return 0;
  const std::int32_t minutes = ZoneMinutes(ReadClock(text.substr(1)));
  return text[0] == u'-' ? -minutes : minutes;
}

double ParseSeconds(std::u16string_view text) {
  if (text.find(u'.') != kNone) return ParseDouble(text);
  if (text.find_first_of(u"eE") != kNone) return 0;
  for (const RefusedNumber& refused : kRefusedNumbers)
    if (text == refused.text) throw EQvException(refused.words);
  return NarrowedInt(text);
}

double DateTimeToSerial(const DateTimeValue& value) {
  double days = 0;
  if (value.Accuracy == DateTimeValue::kDate || value.Accuracy == DateTimeValue::kDateTime)
    days = EncodeDate(Cut(value.Year), Cut(value.Month), Cut(value.Day));
  else if (value.Accuracy != DateTimeValue::kTime)
    throw EQvException(messages::kAccuracy);
  const std::int32_t wholeDaysOfOffset = value.TimeZone / kMinutesOfDay;
  return days + value.Time - wholeDaysOfOffset;
}

double ParseSerialDate(std::u16string_view text) {
  if (const std::optional<double> plain = ReadPlainDate(text)) return *plain;
  return DateTimeToSerial(ParseDateTimeText(text));
}

WideString WriteDateTimeValue(const DateTimeValue& value) {
  char16_t place[kLongestPoint];
  return WideString(WriteDateTimeValue(value, place));
}

std::u16string_view WriteDateTimeValue(const DateTimeValue& value, char16_t* place) {
  PointText text(place);
  switch (value.Accuracy) {
    case DateTimeValue::kCentury:
      text.AddNumber(value.Year / 100);
      break;
    case DateTimeValue::kYear:
      text.AddNumber(value.Year);
      break;
    case DateTimeValue::kMonth:
      AppendMonth(text, value);
      break;
    case DateTimeValue::kDate:
      AppendDate(text, value);
      break;
    case DateTimeValue::kTime:
      AppendTime(text, value);
      break;
    case DateTimeValue::kDateTime:
      AppendDate(text, value);
      text.Add(u'T');
      AppendTime(text, value);
      break;
    default:
      throw EQvException(u"Invalid value");
  }
  return text.Text();
}

WideString DomStringToWide(const char16_t* units, std::size_t length) {
  if (units == nullptr || length == 0) return u"";
  char16_t* const copy = AllocString(units, length);
  if (copy == nullptr) throw EQvException(u"Failed to allocate string");
  return WideString::Attach(copy);
}

}  // namespace qv
