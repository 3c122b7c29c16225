#include "values/duration_impl.h"

#include <vector>

#include "qvscriptwells/e_qv_exception.h"
#include "support/numbers.h"
#include "support/string_helpers.h"
#include "support/tokenize_string.h"
#include "support/wide_text_stream.h"
#include "text/join_text.h"

namespace qv {
namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

void DropThrough(std::u16string_view& text, char16_t mark) {
  const std::size_t at = text.find(mark);
  if (at != kNone) text.remove_prefix(at + 1);
}

// Returns the text before the designator and sets `rest` to the text after it. Without a designator: empty,
// and `rest` is unchanged.
std::u16string_view TakeField(std::u16string_view& rest, std::u16string_view field, char16_t designator) {
  const std::size_t at = field.find(designator);
  if (at == kNone) return {};
  rest = field.substr(at + 1);
  return field.substr(0, at);
}

std::int16_t TakeCount(std::u16string_view& rest, char16_t designator) {
  std::u16string_view field = rest;
  DropThrough(field, u'-');
  DropThrough(field, u'P');
  return static_cast<std::int16_t>(NarrowedInt(TakeField(rest, field, designator)));
}

double TakeSeconds(std::u16string_view& rest) {
  return ParseDouble(TakeField(rest, rest, u'S'));
}

void AppendCount(WideTextStream& text, std::int16_t count, std::u16string_view designator) {
  if (count == 0) return;
  text.Append(DecimalText(count).view());
  text.Append(designator);
}

[[noreturn]] void RefuseText(const char16_t* why) {
  throw EQvException(JoinText({u"Invalid duration format:  ", why}));
}

[[noreturn]] void RefuseNegative(const char16_t* field) {
  throw EQvException(JoinText({u"Invalid duration format: ", field, u" can't be negative."}));
}

void Assign(std::int16_t& field, std::int16_t value, const char16_t* name) {
  if (value < 0) RefuseNegative(name);
  field = value;
}

}  // namespace

void DurationImpl::SetText(WideString text) {
  if (ToUpper(text) != text) RefuseText(u"only capital letters are allowed for separators.");
  ReadSign(text.view());
  std::u16string_view rest = text.view();
  if (negative_ != 0 && !rest.empty()) rest.remove_prefix(1);
  std::vector<WideString> parts;
  if (TokenizeString(rest, u"T", parts) == 0) return ReadDatePart(rest);
  ReadDatePart(parts[0].view());
  ReadTimePart(parts[1].view());
}

// The sign of an earlier text stays if this one has none.
void DurationImpl::ReadSign(std::u16string_view text) {
  const std::size_t dash = text.find(u'-');
  if (dash == 0) negative_ = VARIANT_TRUE;
  if (dash != 0 && dash != kNone) RefuseText(u"'-' is allowd only in the beginning of the string.");
  const std::size_t start = text.find(u'P');
  if ((negative_ == VARIANT_TRUE && start != 1) || (negative_ == 0 && start != 0))
    RefuseText(u"'P' is allowd only in the beginning of the string or after '-'.");
}

void DurationImpl::ReadDatePart(std::u16string_view text) {
  year_ = TakeCount(text, u'Y');
  month_ = TakeCount(text, u'M');
  day_ = TakeCount(text, u'D');
}

void DurationImpl::ReadTimePart(std::u16string_view text) {
  hour_ = TakeCount(text, u'H');
  minute_ = TakeCount(text, u'M');
  second_ = TakeSeconds(text);
}

WideString DurationImpl::GetText() {
  WideTextStream text;
  text.Append(negative_ != 0 ? u"-P" : u"P");
  const std::size_t start = text.size();
  AppendCount(text, year_, u"Y");
  AppendCount(text, month_, u"M");
  AppendCount(text, day_, u"D");
  if (hour_ != 0 || minute_ != 0 || second_ != 0) text.Append(u"T");
  AppendCount(text, hour_, u"H");
  AppendCount(text, minute_, u"M");
  if (second_ != 0) {
    text.Append(GeneralText(second_).view());
    text.Append(u"S");
  }
  if (text.size() == start) text.Append(u"0");
  return text.TakeText();
}

std::int16_t DurationImpl::get_Day() {
  return day_;
}
void DurationImpl::put_Day(std::int16_t value) {
  Assign(day_, value, u"day");
}
std::int16_t DurationImpl::get_Month() {
  return month_;
}
void DurationImpl::put_Month(std::int16_t value) {
  Assign(month_, value, u"month");
}
std::int16_t DurationImpl::get_Year() {
  return year_;
}
void DurationImpl::put_Year(std::int16_t value) {
  Assign(year_, value, u"year");
}
std::int16_t DurationImpl::get_Hour() {
  return hour_;
}
void DurationImpl::put_Hour(std::int16_t value) {
  Assign(hour_, value, u"hour");
}
std::int16_t DurationImpl::get_Min() {
  return minute_;
}
void DurationImpl::put_Min(std::int16_t value) {
  Assign(minute_, value, u"minutes");
}
double DurationImpl::get_Sec() {
  return second_;
}
void DurationImpl::put_Sec(double value) {
  if (value < 0) RefuseNegative(u"seconds");
  second_ = value;
}
VARIANT_BOOL DurationImpl::get_Negative() {
  return negative_;
}
void DurationImpl::put_Negative(VARIANT_BOOL value) {
  negative_ = value;
}

}  // namespace qv
