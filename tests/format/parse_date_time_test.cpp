// Texts as forms of date and time: which fields they fill, and with what.
#include "format/date_time_texts.h"
#include "support/comma_locale.h"

namespace qv {
namespace {

void ExpectParsed(const DateTimeValue& expected, TextList texts) {
  for (const std::u16string_view text : texts) {
    SCOPED_TRACE(Printed(text));
    const DateTimeValue value = ParseDateTimeText(text);
    EXPECT_EQ(value.Accuracy, expected.Accuracy);
    EXPECT_EQ(value.Year, expected.Year);
    EXPECT_EQ(value.Month, expected.Month);
    EXPECT_EQ(value.Day, expected.Day);
    EXPECT_EQ(value.Time, expected.Time);
    EXPECT_EQ(value.TimeZone, expected.TimeZone);
  }
}
void ExpectTime(double time, TextList texts) {
  ExpectParsed({4, 0, 0, 0, time}, texts);
}
void ExpectZone(std::int32_t minutes, TextList texts) {
  ExpectParsed({4, 0, 0, 0, kQuarter, minutes}, texts);
}
void ExpectRefused(const char* thrown, TextList texts) {
  ExpectThrown(ParseDateTimeText, thrown, texts);
}

struct YearOf {
  std::u16string_view text;
  std::int32_t year;
};

TEST(ParseDateTimeText, EmptyPartsLeaveAllFieldsAtZero) {
  ExpectParsed({}, {u"", u"T", u"TZ", u"T+02:00", u"T-", u"+02:00", u"-02:00", u"-10:15:30", u"T+", u"Z:"});
}

TEST(ParseDateTimeText, ShorterThanFourIsACenturyAndItsSignCountsTwice) {
  const YearOf rows[] = {
      {u"20", 2000}, {u"10", 1000},  {u"9", 900},    {u"199", 19900}, {u"007", 700},   {u"-12", 1200},
      {u"-5", 500},  {u" -1", -100}, {u"+12", 1200}, {u"1.5", 100},   {u"1-2", 100},   {u"12Z", 1200},
      {u" 9 ", 900}, {u"1 2", 100},  {u"1e3", 100},  {u"20T", 2000},  {u"20TZ", 2000}, {u"-12T+02:00", 1200}};
  for (const YearOf& row : rows) ExpectParsed({0, row.year}, {row.text});
  ExpectParsed({}, {u"0", u"-0", u"-", u"--1", u"--", u"---", u"abc", u"z", u"t12", u"\uFF11", u"\xD800"sv});
  ExpectParsed({0, 900}, {u"9\0"
                          u"9"sv});
}

TEST(ParseDateTimeText, FourAndMoreWithoutHyphenIsAYear) {
  ExpectParsed({1, 2024},
               {u"2024", u"+2024", u" 2024", u"2024 ", u"2024Z", u"2024z", u"2024/03/05", u"2024.5",
                u"2024\u201003\u201005", u"4294969320", u"2024\0\0"sv, u"2024TZ", u"2024t"});
  ExpectParsed({1, 0}, {u"0000", u"year", u"\uFF12\uFF10\uFF12\uFF14",
                        u"\0"
                        u"2024"sv,
                        u"\xDC00"
                        u"2024"sv});
  const YearOf rows[] = {
      {u"0012", 12},   {u"12024", 12024}, {u"20240305", 20240305},      {u"20e4", 20},
      {u"10:15T", 10}, {u"10+5", 10},     {u"99999999999", 1215752191}, {u"2147483648", INT32_MIN}};
  for (const YearOf& row : rows) ExpectParsed({1, row.year}, {row.text});
}

TEST(ParseDateTimeText, AHyphenInFrontIsAMonthOrNothing) {
  ExpectParsed({2, 0, 5},
               {u"--05--", u"--05x-", u"--5---", u"-x05--", u"--05\xD800-"sv, u"--05--Z", u"--05--T"});
  ExpectParsed({2, 0, 12}, {u"--12--", u"--123-"});
  ExpectParsed({2, 0, 13}, {u"--13--junk"});
  ExpectParsed({2, 0, 0}, {u"--xx--"});
  ExpectParsed({2, 0, 2}, {u"-2024-03-05", u"-2024-"});
  ExpectParsed({}, {u"--1234-", u"--05-", u"--05", u"---05", u"---05--", u"-----------", u"-2024", u"-123",
                    u"-24-03-05", u"-12024-03-05"});
}

TEST(ParseDateTimeText, OneHyphenFurtherOnIsAYearWithAMonth) {
  ExpectParsed({6, 2024, 3}, {u"2024-03", u"2024-3", u"2024-03Z", u"2024-03T", u"2024-03T+02:00"});
  ExpectParsed({6, 2024, 0}, {u"2024-"});
  ExpectParsed({6, 2024, 305}, {u"2024-0305"});
  ExpectParsed({6, 1, 23}, {u"1-23"});
  ExpectParsed({6, 0, 0}, {u"abcd-ef"});
  ExpectParsed({6, 0, 3}, {u" -03"});
}

TEST(ParseDateTimeText, TwoHyphensFurtherOnAreADate) {
  ExpectParsed({3, 2024, 3, 5},
               {u"2024-03-05", u"2024-3-5", u" 2024 - 03 - 05 ", u"\n2024-03-05\r\n", u"+2024-03-05",
                u"2024-+03-+05", u"2024-03-05-06", u"2024-03-05Z", u"2024-03-05t10", u"2024-03-05T",
                u"2024-03-05TZ", u"2024-03-05T+02:00", u"2024-03-05T-10:15", u"2024-03-05T+99",
                u"2024-03-05TZ10:15", u"2024\0-03-05"sv, u"2024-03\0-05\0"sv});
  ExpectParsed({3, 24, 3, 5}, {u"24-3-5"});
  ExpectParsed({3, 1, 2, 3}, {u"1-2-3"});
  ExpectParsed({3, 12024, 3, 5}, {u"12024-03-05"});
  ExpectParsed({3, 67560, 65539, 65541}, {u"67560-65539-65541"});
  ExpectParsed({3, 0, 5, 6}, {u" -5-06"});
  ExpectParsed({3, 2024, 3, -5}, {u"2024-03--05"});
  ExpectParsed({3, 2024, 0, 3}, {u"2024--03-05"});
  ExpectParsed({3, 2024, 0, 0}, {u"2024--"});
  ExpectParsed({3, 2024, 3, 0}, {u"2024-03-"});
  ExpectParsed({3, 0, 3, 5}, {u"\u0662\u0660-03-05", u"\xD800-03-05"sv});
  ExpectParsed({3, 2024, 0, 5}, {u"2024-\xDC00-05"sv});
  ExpectParsed({3, 0, 0, 0}, {u"x-y-z"});
}

TEST(ParseDateTimeText, AColonWithoutAnyCapitalTIsATime) {
  ExpectTime(kMorning, {u"10:15:30", u"10:15:30.5Z", u"10:15:30Z", u"T10:15:30Z", u"65546:65551:65566"});
  ExpectTime(kQuarter, {u"10:15", u"10:15z", u"T10:15", u" 10:15 ", u"10:15:1e1", u"10:15:0", u"10:15:nan"});
  ExpectTime(900.0 / 86400.0, {u"t10:15", u"Tue 10:15"});
  ExpectTime(0.0, {u":"});
  ExpectTime(-1064.0, {u"40000:00"});
}

TEST(ParseDateTimeText, BothPartsAreADateAndTime) {
  ExpectParsed({5, 2024, 3, 5, kMorning}, {u"2024-03-05T10:15:30", u"2024-03-05T10:15:30.7Z",
                                           u"2024-03-05T10:15T11:30", u"2024-03-05T10:15\0:30"sv});
  ExpectParsed({5, 2024, 3, 5, kQuarter},
               {u"2024-03-05T10:15", u"2024-03-05 T 10:15", u"2024-03-05Z+1T10:15", u"2024-03-05\0T10:15"sv});
  ExpectParsed({5, 2024, 3, 5, kMorning, 120}, {u"2024-03-05T10:15:30+02:00"});
  ExpectParsed({5, 2024, 3, 5, kMorning, -150}, {u"2024-03-05T10:15:30-02:30"});
  ExpectParsed({5, 2024, 13, 45, kQuarter}, {u"2024-13-45T10:15"});
  ExpectParsed({5, 1, 2, 3}, {u"1-2-3T:"});
}

TEST(ParseDateTimeText, TheZoneBeginsAtThePlusThenTheMinusThenTheZ) {
  // In "10:15-01:00+02:00" the "-01:00" is the second "00".
  ExpectZone(120, {u"10:15+02:00Z", u"10:15-01:00+02:00", u"10:15+02:00-01:00", u"10:15+02:00+03:00"});
  ExpectZone(-120, {u"10:15-02:00Z", u"10:15-02:00-03:00"});
  ExpectZone(90, {u"10:15+01:30"});
  ExpectZone(-90, {u"10:15-01:30"});
  ExpectZone(720, {u"10:15Z12:00"});
  ExpectZone(60, {u"10:15z+01:00"});
  ExpectZone(1440, {u"10:15+24:00"});
  ExpectZone(-1440, {u"10:15-24:00"});
  ExpectZone(0, {u"10:15\uFF0B02:00"});
  ExpectZone(59, {u"10:15--01:00"});
  ExpectParsed({4, 0, 0, 0, kMorning, 120}, {u"10:15:30Z+02:00"});
  ExpectParsed({4, 0, 0, 0, kMorning, -120}, {u"10:15:30Z-02:00", u"10:15:30.-02:00"});
}

TEST(ParseDateTimeText, RefusesBadTextsInTheOrderOfItsSteps) {
  ExpectRefused(kNoFullDate, {u"2024-03T10:15:00", u"2024T10:15:00", u"20T10:15", u"-12T10:15",
                              u"--05--T10:15", u"-2024T10:15", u"-2024-03-05T10:15", u"2024-03T10",
                              u"2024T24:00", u" T10:15", u"10:15T10:15", u"2024T10:15+5"});
  ExpectRefused(kInvalidFormat, {u"2024-03-05T10", u"T10", u"TT", u"10:15+5", u"10:15+", u"10:15-",
                                 u"10:15ZZ", u"10:15Z ", u"10:15:-0", u"10:15:-INF", u"10:-15",
                                 u"10:15:1.0e+1", u"10+05:00", u"10-05:00", u"10:15Z\0"sv});
  ExpectRefused(kInvalidFormat,
                {u"2024-03-05t10:15:30", u"2024-03-05 10:15:30", u"2024-03-05+02:00", u"2024-03-05-02:00"});
  ExpectRefused(kInvalidTime, {u"24:00", u"24:00:00Z", u"24:00+5", u"10:60", u"10:15:60", u"10:15:590.e-1",
                               u"10:15+25:00", u"10:15-24:01", u"10:15+12:60"});
  ExpectRefused(kNaN, {u"10:15:NaN", u"10:15:NaNZ", u"10:15:NaN+5", u"2024-03-05T10:15+00:00:NaN"});
  ExpectRefused(kInf, {u"10:15:INF", u"10:15:INF-02:00"});
}

// As in the formaters of numbers: such a text has no narrow form.
TEST(ParseDateTimeText, ALoneSurrogateMakesItsFieldZero) {
  ExpectParsed({3, 0, 3, 5}, {u"2024\xD800-03-05"sv});
  ExpectParsed({3, 2024, 0, 0}, {u"2024-03\xDC00-05\xD800"sv});
  ExpectTime(900.0 / 86400.0, {u"10\xD800:15:30\xD800"sv});
  ExpectParsed({3, 2024, 3, 5}, {u"2024\U0001F600-03-05"sv});
}

TEST(ParseDateTimeText, LongTextsAreReadToTheirEnd) {
  const std::u16string zeros(100000, u'0');
  const std::u16string nines(100000, u'9');
  ExpectParsed({3, 2024, 3, 5}, {zeros + u"2024-" + zeros + u"3-" + zeros + u"5"});
  ExpectParsed({1, -1}, {nines});
  ExpectParsed({5, -1, 3, 5, kQuarter}, {nines + u"-03-05T10:15"});
  ExpectParsed({}, {std::u16string(100000, u'-')});
  ExpectTime(0.0, {std::u16string(100000, u':')});
  ExpectRefused(kInvalidFormat, {std::u16string(100000, u'T')});
  ExpectRefused("nothing", {std::u16string(100000, u'+') + u":"});
}

TEST(ParseDateTimeText, KnowsNoLocale) {
  const CommaLocale comma;
  ExpectParsed({3, 2, 3, 5}, {u"2.024-03-05"});
  ExpectTime(kMorning, {u"10:15:3.0e1Z"});
}

}  // namespace
}  // namespace qv
