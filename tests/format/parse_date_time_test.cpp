#include <gtest/gtest.h>

#include <string>

#include "fixtures/thrown.h"
#include "format/text_conversions.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr double kMorning = 36930000.0 / 86400000.0;  // 10:15:30
constexpr double kQuarter = 36900000.0 / 86400000.0;  // 10:15
constexpr char kNoFullDate[] = "EQvException 0x00000000 Expecting a full date value";
constexpr char kInvalidFormat[] = "EQvException 0x00000000 Invalid time format";
constexpr char kInvalidTime[] = "EQvException 0x00000000 Invalid argument to time encode";
constexpr char kNaN[] = "EQvException 0x00000000 Unable to convert NaN float value";
constexpr char kInf[] = "EQvException 0x00000000 Unable to convert INF float value";

std::string Printed(std::u16string_view text) {
  return testing::PrintToString(WideString(text.substr(0, 60)));
}

struct Parsed {
  std::u16string_view text;
  std::int32_t accuracy, year, month, day;
  double time;
  std::int32_t zone;
};

void ExpectParsed(const Parsed& row) {
  SCOPED_TRACE(Printed(row.text));
  const DateTimeValue value = ParseDateTimeText(row.text);
  EXPECT_EQ(value.Accuracy, row.accuracy);
  EXPECT_EQ(value.Year, row.year);
  EXPECT_EQ(value.Month, row.month);
  EXPECT_EQ(value.Day, row.day);
  EXPECT_EQ(value.Time, row.time);
  EXPECT_EQ(value.TimeZone, row.zone);
}

struct YearOf {
  std::u16string_view text;
  std::int32_t year;
};

struct Refused {
  std::u16string_view text;
  const char* thrown;
};

TEST(ParseDateTimeText, EmptyPartsLeaveAllFieldsAtZero) {
  for (const std::u16string_view text : {u""sv, u"T"sv, u"TZ"sv, u"T+02:00"sv, u"T-"sv, u"+02:00"sv,
                                         u"-02:00"sv, u"-10:15:30"sv, u"T+"sv, u"Z:"sv}) {
    ExpectParsed({text, 0, 0, 0, 0, 0.0, 0});
  }
}

TEST(ParseDateTimeText, ShorterThanFourIsACenturyAndItsSignCountsTwice) {
  const YearOf rows[] = {{u"20", 2000},
                         {u"10", 1000},
                         {u"9", 900},
                         {u"199", 19900},
                         {u"0", 0},
                         {u"007", 700},
                         {u"-12", 1200},
                         {u"-5", 500},
                         {u"-0", 0},
                         {u"-", 0},
                         {u"--1", 0},
                         {u"--", 0},
                         {u"---", 0},
                         {u" -1", -100},
                         {u"+12", 1200},
                         {u"abc", 0},
                         {u"1.5", 100},
                         {u"1-2", 100},
                         {u"12Z", 1200},
                         {u" 9 ", 900},
                         {u"1 2", 100},
                         {u"z", 0},
                         {u"t12", 0},
                         {u"1e3", 100},
                         {u"\uFF11", 0},
                         {u"9\0"
                          u"9"sv,
                          900},
                         {u"\xD800"sv, 0},
                         {u"20T", 2000},
                         {u"20TZ", 2000},
                         {u"-12T+02:00", 1200}};
  for (const YearOf& row : rows) ExpectParsed({row.text, 0, row.year, 0, 0, 0.0, 0});
}

TEST(ParseDateTimeText, FourAndMoreWithoutHyphenIsAYear) {
  const YearOf rows[] = {{u"2024", 2024},
                         {u"0000", 0},
                         {u"0012", 12},
                         {u"12024", 12024},
                         {u"+2024", 2024},
                         {u" 2024", 2024},
                         {u"2024 ", 2024},
                         {u"2024Z", 2024},
                         {u"2024z", 2024},
                         {u"20240305", 20240305},
                         {u"2024/03/05", 2024},
                         {u"2024.5", 2024},
                         {u"20e4", 20},
                         {u"year", 0},
                         {u"10:15T", 10},
                         {u"10+5", 10},
                         {u"2024\u201003\u201005", 2024},
                         {u"\uFF12\uFF10\uFF12\uFF14", 0},
                         {u"4294969320", 2024},
                         {u"99999999999", 1215752191},
                         {u"2147483648", INT32_MIN},
                         {u"2024\0\0"sv, 2024},
                         {u"\0"
                          u"2024"sv,
                          0},
                         {u"\xDC00"
                          u"2024"sv,
                          0},
                         {u"2024TZ", 2024},
                         {u"2024t", 2024}};
  for (const YearOf& row : rows) ExpectParsed({row.text, 1, row.year, 0, 0, 0.0, 0});
}

TEST(ParseDateTimeText, AHyphenInFrontIsAMonthOrNothing) {
  const Parsed rows[] = {{u"--05--", 2, 0, 5, 0, 0.0, 0},        {u"--12--", 2, 0, 12, 0, 0.0, 0},
                         {u"--13--junk", 2, 0, 13, 0, 0.0, 0},   {u"--05x-", 2, 0, 5, 0, 0.0, 0},
                         {u"--5---", 2, 0, 5, 0, 0.0, 0},        {u"--123-", 2, 0, 12, 0, 0.0, 0},
                         {u"--xx--", 2, 0, 0, 0, 0.0, 0},        {u"-x05--", 2, 0, 5, 0, 0.0, 0},
                         {u"--05\xD800-"sv, 2, 0, 5, 0, 0.0, 0}, {u"-2024-03-05", 2, 0, 2, 0, 0.0, 0},
                         {u"-2024-", 2, 0, 2, 0, 0.0, 0},        {u"--05--Z", 2, 0, 5, 0, 0.0, 0},
                         {u"--05--T", 2, 0, 5, 0, 0.0, 0},       {u"--1234-", 0, 0, 0, 0, 0.0, 0},
                         {u"--05-", 0, 0, 0, 0, 0.0, 0},         {u"--05", 0, 0, 0, 0, 0.0, 0},
                         {u"---05", 0, 0, 0, 0, 0.0, 0},         {u"---05--", 0, 0, 0, 0, 0.0, 0},
                         {u"-----------", 0, 0, 0, 0, 0.0, 0},   {u"-2024", 0, 0, 0, 0, 0.0, 0},
                         {u"-123", 0, 0, 0, 0, 0.0, 0},          {u"-24-03-05", 0, 0, 0, 0, 0.0, 0},
                         {u"-12024-03-05", 0, 0, 0, 0, 0.0, 0}};
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ParseDateTimeText, OneHyphenFurtherOnIsAYearWithAMonth) {
  const Parsed rows[] = {{u"2024-03", 6, 2024, 3, 0, 0.0, 0},        {u"2024-3", 6, 2024, 3, 0, 0.0, 0},
                         {u"2024-", 6, 2024, 0, 0, 0.0, 0},          {u"1-23", 6, 1, 23, 0, 0.0, 0},
                         {u"2024-0305", 6, 2024, 305, 0, 0.0, 0},    {u"2024-03Z", 6, 2024, 3, 0, 0.0, 0},
                         {u"abcd-ef", 6, 0, 0, 0, 0.0, 0},           {u"2024-03T", 6, 2024, 3, 0, 0.0, 0},
                         {u"2024-03T+02:00", 6, 2024, 3, 0, 0.0, 0}, {u" -03", 6, 0, 3, 0, 0.0, 0}};
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ParseDateTimeText, TwoHyphensFurtherOnAreADate) {
  const Parsed rows[] = {{u"2024-03-05", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-3-5", 3, 2024, 3, 5, 0.0, 0},
                         {u"24-3-5", 3, 24, 3, 5, 0.0, 0},
                         {u"1-2-3", 3, 1, 2, 3, 0.0, 0},
                         {u"12024-03-05", 3, 12024, 3, 5, 0.0, 0},
                         {u"67560-65539-65541", 3, 67560, 65539, 65541, 0.0, 0},
                         {u" 2024 - 03 - 05 ", 3, 2024, 3, 5, 0.0, 0},
                         {u"\n2024-03-05\r\n", 3, 2024, 3, 5, 0.0, 0},
                         {u"+2024-03-05", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-+03-+05", 3, 2024, 3, 5, 0.0, 0},
                         {u" -5-06", 3, 0, 5, 6, 0.0, 0},
                         {u"2024-03-05-06", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03--05", 3, 2024, 3, -5, 0.0, 0},
                         {u"2024--03-05", 3, 2024, 0, 3, 0.0, 0},
                         {u"2024--", 3, 2024, 0, 0, 0.0, 0},
                         {u"2024-03-", 3, 2024, 3, 0, 0.0, 0},
                         {u"2024-03-05Z", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03-05t10", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03-05T", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03-05TZ", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03-05T+02:00", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03-05T-10:15", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03-05T+99", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03-05TZ10:15", 3, 2024, 3, 5, 0.0, 0},
                         {u"2024\0-03-05"sv, 3, 2024, 3, 5, 0.0, 0},
                         {u"2024-03\0-05\0"sv, 3, 2024, 3, 5, 0.0, 0},
                         {u"\u0662\u0660-03-05", 3, 0, 3, 5, 0.0, 0},
                         {u"\xD800-03-05"sv, 3, 0, 3, 5, 0.0, 0},
                         {u"2024-\xDC00-05"sv, 3, 2024, 0, 5, 0.0, 0},
                         {u"x-y-z", 3, 0, 0, 0, 0.0, 0}};
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ParseDateTimeText, AColonWithoutAnyCapitalTIsATime) {
  const Parsed rows[] = {{u"10:15:30", 4, 0, 0, 0, kMorning, 0},
                         {u"10:15", 4, 0, 0, 0, kQuarter, 0},
                         {u"10:15:30.5Z", 4, 0, 0, 0, kMorning, 0},
                         {u"10:15:30Z", 4, 0, 0, 0, kMorning, 0},
                         {u"10:15z", 4, 0, 0, 0, kQuarter, 0},
                         {u"T10:15", 4, 0, 0, 0, kQuarter, 0},
                         {u"T10:15:30Z", 4, 0, 0, 0, kMorning, 0},
                         {u"t10:15", 4, 0, 0, 0, 900.0 / 86400.0, 0},
                         {u"Tue 10:15", 4, 0, 0, 0, 900.0 / 86400.0, 0},
                         {u" 10:15 ", 4, 0, 0, 0, kQuarter, 0},
                         {u":", 4, 0, 0, 0, 0.0, 0},
                         {u"10:15:1e1", 4, 0, 0, 0, kQuarter, 0},
                         {u"10:15:0", 4, 0, 0, 0, kQuarter, 0},
                         {u"10:15:nan", 4, 0, 0, 0, kQuarter, 0},
                         {u"65546:65551:65566", 4, 0, 0, 0, kMorning, 0},
                         {u"40000:00", 4, 0, 0, 0, -1064.0, 0}};
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ParseDateTimeText, BothPartsAreADateAndTime) {
  const Parsed rows[] = {{u"2024-03-05T10:15:30", 5, 2024, 3, 5, kMorning, 0},
                         {u"2024-03-05T10:15", 5, 2024, 3, 5, kQuarter, 0},
                         {u"2024-03-05T10:15:30.7Z", 5, 2024, 3, 5, kMorning, 0},
                         {u"2024-03-05T10:15:30+02:00", 5, 2024, 3, 5, kMorning, 120},
                         {u"2024-03-05T10:15:30-02:30", 5, 2024, 3, 5, kMorning, -150},
                         {u"2024-03-05T10:15T11:30", 5, 2024, 3, 5, kMorning, 0},
                         {u"2024-03-05 T 10:15", 5, 2024, 3, 5, kQuarter, 0},
                         {u"2024-03-05Z+1T10:15", 5, 2024, 3, 5, kQuarter, 0},
                         {u"2024-13-45T10:15", 5, 2024, 13, 45, kQuarter, 0},
                         {u"1-2-3T:", 5, 1, 2, 3, 0.0, 0},
                         {u"2024-03-05T10:15\0:30"sv, 5, 2024, 3, 5, kMorning, 0},
                         {u"2024-03-05\0T10:15"sv, 5, 2024, 3, 5, kQuarter, 0}};
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ParseDateTimeText, TheZoneBeginsAtThePlusThenTheMinusThenTheZ) {
  const Parsed rows[] = {
      {u"10:15+01:30", 4, 0, 0, 0, kQuarter, 90},         {u"10:15-01:30", 4, 0, 0, 0, kQuarter, -90},
      {u"10:15:30Z+02:00", 4, 0, 0, 0, kMorning, 120},    {u"10:15:30Z-02:00", 4, 0, 0, 0, kMorning, -120},
      {u"10:15-02:00Z", 4, 0, 0, 0, kQuarter, -120},      {u"10:15+02:00Z", 4, 0, 0, 0, kQuarter, 120},
      {u"10:15-01:00+02:00", 4, 0, 0, 0, kQuarter, 120},  // its second is "00"
      {u"10:15+02:00-01:00", 4, 0, 0, 0, kQuarter, 120},  {u"10:15+02:00+03:00", 4, 0, 0, 0, kQuarter, 120},
      {u"10:15-02:00-03:00", 4, 0, 0, 0, kQuarter, -120}, {u"10:15Z12:00", 4, 0, 0, 0, kQuarter, 720},
      {u"10:15z+01:00", 4, 0, 0, 0, kQuarter, 60},        {u"10:15+24:00", 4, 0, 0, 0, kQuarter, 1440},
      {u"10:15-24:00", 4, 0, 0, 0, kQuarter, -1440},      {u"10:15:30.-02:00", 4, 0, 0, 0, kMorning, -120},
      {u"10:15\uFF0B02:00", 4, 0, 0, 0, kQuarter, 0},     {u"10:15--01:00", 4, 0, 0, 0, kQuarter, 59}};
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ParseDateTimeText, RefusesBadTextsInTheOrderOfItsSteps) {
  const Refused rows[] = {{u"2024-03T10:15:00", kNoFullDate},
                          {u"2024T10:15:00", kNoFullDate},
                          {u"20T10:15", kNoFullDate},
                          {u"-12T10:15", kNoFullDate},
                          {u"--05--T10:15", kNoFullDate},
                          {u"-2024T10:15", kNoFullDate},
                          {u"-2024-03-05T10:15", kNoFullDate},
                          {u"2024-03T10", kNoFullDate},
                          {u"2024T24:00", kNoFullDate},
                          {u" T10:15", kNoFullDate},
                          {u"10:15T10:15", kNoFullDate},
                          {u"2024T10:15+5", kNoFullDate},
                          {u"2024-03-05T10", kInvalidFormat},
                          {u"T10", kInvalidFormat},
                          {u"TT", kInvalidFormat},
                          {u"10:15+5", kInvalidFormat},
                          {u"10:15+", kInvalidFormat},
                          {u"10:15-", kInvalidFormat},
                          {u"10:15ZZ", kInvalidFormat},
                          {u"10:15Z ", kInvalidFormat},
                          {u"10:15:-0", kInvalidFormat},
                          {u"10:15:-INF", kInvalidFormat},
                          {u"10:-15", kInvalidFormat},
                          {u"10:15:1.0e+1", kInvalidFormat},
                          {u"10+05:00", kInvalidFormat},
                          {u"10-05:00", kInvalidFormat},
                          {u"2024-03-05t10:15:30", kInvalidFormat},
                          {u"2024-03-05 10:15:30", kInvalidFormat},
                          {u"2024-03-05+02:00", kInvalidFormat},
                          {u"2024-03-05-02:00", kInvalidFormat},
                          {u"10:15Z\0"sv, kInvalidFormat},
                          {u"24:00", kInvalidTime},
                          {u"24:00:00Z", kInvalidTime},
                          {u"24:00+5", kInvalidTime},
                          {u"10:60", kInvalidTime},
                          {u"10:15:60", kInvalidTime},
                          {u"10:15:590.e-1", kInvalidTime},
                          {u"10:15+25:00", kInvalidTime},
                          {u"10:15-24:01", kInvalidTime},
                          {u"10:15+12:60", kInvalidTime},
                          {u"10:15:NaN", kNaN},
                          {u"10:15:NaNZ", kNaN},
                          {u"10:15:NaN+5", kNaN},
                          {u"10:15:INF", kInf},
                          {u"10:15:INF-02:00", kInf},
                          {u"2024-03-05T10:15+00:00:NaN", kNaN}};
  for (const Refused& row : rows)
    EXPECT_EQ(Thrown([&row] { ParseDateTimeText(row.text); }), row.thrown) << Printed(row.text);
}

// As in the formaters of numbers: such a text has no narrow form.
TEST(ParseDateTimeText, ALoneSurrogateMakesItsFieldZero) {
  ExpectParsed({u"2024\xD800-03-05"sv, 3, 0, 3, 5, 0.0, 0});
  ExpectParsed({u"2024-03\xDC00-05\xD800"sv, 3, 2024, 0, 0, 0.0, 0});
  ExpectParsed({u"10\xD800:15:30\xD800"sv, 4, 0, 0, 0, 900.0 / 86400.0, 0});
  ExpectParsed({u"2024\U0001F600-03-05"sv, 3, 2024, 3, 5, 0.0, 0});
}

TEST(ParseDateTimeText, LongTextsAreReadToTheirEnd) {
  const std::u16string zeros(100000, u'0');
  const std::u16string nines(100000, u'9');
  ExpectParsed({zeros + u"2024-" + zeros + u"3-" + zeros + u"5", 3, 2024, 3, 5, 0.0, 0});
  ExpectParsed({nines, 1, -1, 0, 0, 0.0, 0});
  ExpectParsed({nines + u"-03-05T10:15", 5, -1, 3, 5, kQuarter, 0});
  ExpectParsed({std::u16string(100000, u'-'), 0, 0, 0, 0, 0.0, 0});
  ExpectParsed({std::u16string(100000, u':'), 4, 0, 0, 0, 0.0, 0});
  EXPECT_EQ(Thrown([] { ParseDateTimeText(std::u16string(100000, u'T')); }), kInvalidFormat);
  EXPECT_EQ(Thrown([] { ParseDateTimeText(std::u16string(100000, u'+') + u":"); }), "nothing");
}

TEST(ParseDateTimeText, KnowsNoLocale) {
  const CommaLocale comma;
  ExpectParsed({u"2.024-03-05", 3, 2, 3, 5, 0.0, 0});
  ExpectParsed({u"10:15:3.0e1Z", 4, 0, 0, 0, kMorning, 0});
}

}  // namespace
}  // namespace qv
