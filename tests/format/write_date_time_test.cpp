// Forms of date and time as texts and as serial dates.
#include <cstdint>
#include <limits>
#include <utility>

#include "fixtures/shown_text.h"
#include "format/date_time_texts.h"
#include "support/comma_locale.h"
#include "support/string_helpers.h"

namespace qv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr char kInvalidValue[] = "EQvException 0x00000000 Invalid value";
constexpr char kTimeNotDecoded[] = "EQvException 0x00000000 Invalid argument to time decode";

struct Written {
  DateTimeValue value;
  const char* text;
};

std::string TextOf(const DateTimeValue& value) {
  return Shown(WriteDateTimeValue(value));
}
std::string TimeText(double time, std::int32_t zone = 0) {
  return TextOf({4, 2024, 3, 5, time, zone});
}

using Texts = std::pair<std::int32_t, const char*>;

TEST(WriteDateTimeValue, CenturyYearAndMonthArePlain) {
  const Texts centuries[] = {{2000, "20"},   {1999, "19"}, {50, "0"},          {-50, "0"},
                             {-1999, "-19"}, {0, "0"},     {1234567, "12345"}, {1200, "12"}};
  for (const auto& [year, text] : centuries) EXPECT_EQ(TextOf({0, year}), text);
  const Texts years[] = {
      {2024, "2024"},           {5, "5"}, {0, "0"}, {-5, "-5"}, {12345, "12345"}, {INT32_MIN, "-2147483648"},
      {INT32_MAX, "2147483647"}};
  for (const auto& [year, text] : years) EXPECT_EQ(TextOf({1, year}), text);
  const Texts months[] = {{5, "--05--"}, {12, "--12--"}, {0, "--00--"}, {123, "--123--"}};
  for (const auto& [month, text] : months) EXPECT_EQ(TextOf({2, 0, month}), text);
}

TEST(WriteDateTimeValue, OtherFieldsDoNotMatter) {
  EXPECT_EQ(TextOf({0, 2000, 3, 5}), "20");
  EXPECT_EQ(TextOf({0, 1200, 0, 0, 0.5, 90}), "12");
  EXPECT_EQ(TextOf({1, 2024, 3, 5}), "2024");
  EXPECT_EQ(TextOf({1, 2024, 3, 5, 0.5, 90}), "2024");
  EXPECT_EQ(TextOf({2, 2024, 5, 6}), "--05--");
  EXPECT_EQ(TextOf({2, 0, 5, 0, 0.5, 90}), "--05--");
  EXPECT_EQ(TextOf({3, 2024, 3, 5, 0.5, 90}), "2024-03-05");
  EXPECT_EQ(TextOf({3, 2024, 3, 5, kNotANumber}), "2024-03-05");
}

// No day is checked; the zeros are on the left of all.
TEST(WriteDateTimeValue, DateHasLeadingZeros) {
  const Written rows[] = {{{3, 2024, 3, 5}, "2024-03-05"},        {{3, 2024, 12, 31}, "2024-12-31"},
                          {{3, 5, 1, 1}, "0005-01-01"},           {{3, 24, 10, 9}, "0024-10-09"},
                          {{3, 0, 0, 0}, "0000-00-00"},           {{3, 999, 1, 10}, "0999-01-10"},
                          {{3, 2024, 2, 31}, "2024-02-31"},       {{3, -5, -1, -12}, "00-5--1--12"},
                          {{3, 12345, 123, 456}, "12345-123-456"}};
  for (const Written& row : rows) EXPECT_EQ(TextOf(row.value), row.text);
}

TEST(WriteDateTimeValue, TimeHasPlainMilliseconds) {
  const std::pair<double, const char*> rows[] = {
      {0.0, "00:00:00.0Z"},         {36930000.0, "10:15:30.0Z"},       {36930007.0, "10:15:30.7Z"},
      {36930070.0, "10:15:30.70Z"}, {36930700.0, "10:15:30.700Z"},     {36930999.0, "10:15:30.999Z"},
      {3723004.0, "01:02:03.4Z"},   {43200000.0, "12:00:00.0Z"},       {86399999.0, "23:59:59.999Z"},
      {86399999.6, "24:00:00.0Z"},  {86400000.0, "00:00:00.0Z"},       {0.4, "00:00:00.0Z"},
      {0.6, "00:00:00.1Z"},         {-21600000.0, "-5:-59:-59.-999Z"}, {-1800000.0, "00:-29:-59.-999Z"},
      {-1000.0, "00:00:00.-999Z"}};
  for (const auto& [milliseconds, text] : rows)
    EXPECT_EQ(TimeText(milliseconds / 86400000.0), text) << milliseconds;
}

TEST(WriteDateTimeValue, TimeIsThatOfTheDayWhateverTheDay) {
  const std::pair<double, const char*> rows[] = {{45356.5, "12:00:00.0Z"},
                                                 {45356.0 + kMorning, "10:15:30.0Z"},
                                                 {1e300, "00:00:00.0Z"},
                                                 {0.999999999999, "24:00:00.0Z"}};
  for (const auto& [time, text] : rows) EXPECT_EQ(TimeText(time), text) << time;
}

TEST(WriteDateTimeValue, ZoneHasNoLeadingZeros) {
  const Texts rows[] = {{0, "Z"},
                        {90, "+1:30"},
                        {65, "+1:5"},
                        {60, "+1:0"},
                        {5, "+0:5"},
                        {1, "+0:1"},
                        {-1, "-0:1"},
                        {-65, "-1:5"},
                        {-90, "-1:30"},
                        {-720, "-12:0"},
                        {840, "+14:0"},
                        {1439, "+23:59"},
                        {1440, "+24:0"},
                        {-6001, "-100:1"},
                        {INT32_MAX, "+35791394:7"},
                        {INT32_MIN, "-35791394:8"}};
  for (const auto& [minutes, text] : rows)
    EXPECT_EQ(TimeText(0.5, minutes), std::string("12:00:00.0") + text);
}

TEST(WriteDateTimeValue, DateAndTimeAreJoinedByT) {
  const Written rows[] = {{{5, 2024, 3, 5, kMorning}, "2024-03-05T10:15:30.0Z"},
                          {{5, 2024, 3, 5}, "2024-03-05T00:00:00.0Z"},
                          {{5, 5, 1, 1, 0.5, -90}, "0005-01-01T12:00:00.0-1:30"},
                          {{5, 2024, 3, 5, 45356.5, 65}, "2024-03-05T12:00:00.0+1:5"},
                          {{5, 2024, 3, 5, 0.999999999999}, "2024-03-05T24:00:00.0Z"},
                          {{5, 12345, 0, 0, 7.0 / 86400000.0}, "12345-00-00T00:00:00.7Z"}};
  for (const Written& row : rows) EXPECT_EQ(TextOf(row.value), row.text);
}

TEST(WriteDateTimeValue, RefusesOtherFormsAndTimesThatAreNotFinite) {
  for (const std::int32_t accuracy : {6, 7, 8, 100, -1, INT32_MAX, INT32_MIN})
    EXPECT_EQ(Thrown([&] { TextOf({accuracy, 2024, 3, 5, 0.5}); }), kInvalidValue) << accuracy;
  for (const std::int32_t accuracy : {4, 5})
    for (const double time : {kNotANumber, kInfinity, -kInfinity})
      EXPECT_EQ(Thrown([&] {
                  TextOf({accuracy, 2024, 3, 5, time});
                }),
                kTimeNotDecoded)
          << accuracy << " " << time;
}

TEST(WriteDateTimeValue, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(TextOf({1, 2024}), "2024");
  EXPECT_EQ(TextOf({0, 1234567}), "12345");
  EXPECT_EQ(TextOf({5, 12345, 3, 5, 36930007.0 / 86400000.0, INT32_MAX}),
            "12345-03-05T10:15:30.7+35791394:7");
}

struct Serial {
  DateTimeValue value;
  double serial;
};

// The time counts in a date too; fields of the date are cut to sixteen bits.
TEST(DateTimeToSerial, IsTheDayPlusTheTime) {
  const Serial rows[] = {{{3, 2024, 3, 5}, 45356.0},         {{3, 1899, 12, 30}, 0.0},
                         {{5, 2024, 3, 5, 0.5}, 45356.5},    {{3, 2024, 3, 5, 0.5}, 45356.5},
                         {{5, 1899, 12, 29, 0.25}, -0.75},   {{4, 2024, 99, 99, 0.5}, 0.5},
                         {{4, 0, 0, 0, -1064.0}, -1064.0},   {{5, 2024, 3, 5, 2.5}, 45358.5},
                         {{3, 67560, 3, 5}, 45356.0},        {{3, -63512, 3, 5}, 45356.0},
                         {{3, 2024, 65539, 5}, 45356.0},     {{3, 2024, 3, 65541}, 45356.0},
                         {{4, 0, 0, 0, kMorning}, kMorning}, {{4, 2024, 3, 5, kMorning}, kMorning}};
  for (const Serial& row : rows) EXPECT_EQ(DateTimeToSerial(row.value), row.serial);
  EXPECT_EQ(DateTimeToSerial({5, 2024, 3, 5, kMorning}), 45356.0 + kMorning);
  EXPECT_EQ(DateTimeToSerial({3, 2024, -65533, -65531}), 45356.0);
  EXPECT_EQ(DateTimeToSerial({5, 67560, 65539, 65541, 0.5}), 45356.5);
}

TEST(DateTimeToSerial, OffsetsCountInWholeDaysOnly) {
  const std::pair<std::int32_t, int> rows[] = {{0, 0},
                                               {1, 0},
                                               {120, 0},
                                               {1439, 0},
                                               {1440, -1},
                                               {2879, -1},
                                               {2880, -2},
                                               {-1, 0},
                                               {-1439, 0},
                                               {-1440, 1},
                                               {-2879, 1},
                                               {-2880, 2},
                                               {INT32_MAX, -1491308},
                                               {INT32_MIN, 1491308}};
  for (const auto& [minutes, days] : rows) {
    EXPECT_EQ(DateTimeToSerial({5, 2024, 3, 5, 0.5, minutes}), 45356.5 + days) << minutes;
    EXPECT_EQ(DateTimeToSerial({3, 2024, 3, 5, 0.5, minutes}), 45356.5 + days) << minutes;
    EXPECT_EQ(DateTimeToSerial({4, 0, 0, 0, 0.5, minutes}), 0.5 + days) << minutes;
  }
}

TEST(DateTimeToSerial, RefusesOtherDaysAndForms) {
  const DateTimeValue rows[] = {
      {3, 2023, 2, 29},      {3, 0, 1, 1},    {3, 10000, 1, 1},     {3, 65536, 1, 1},    {3, 40000, 1, 1},
      {5, 2024, 13, 1, 0.5}, {5, 2024, 0, 1}, {3, 2024, 3, 0},      {3, 2024, 3, 32},    {3, 2024, 3, -5},
      {3, 2024, 65536, 1},   {3, 0, 0, 0},    {3, INT32_MIN, 1, 1}, {3, INT32_MAX, 1, 1}};
  for (const DateTimeValue& row : rows)
    EXPECT_EQ(Thrown([&] { DateTimeToSerial(row); }), kInvalidDate)
        << row.Year << "/" << row.Month << "/" << row.Day;
  for (const std::int32_t accuracy : {0, 1, 2, 6, 7, -1, INT32_MAX, INT32_MIN})
    EXPECT_EQ(Thrown([&] { DateTimeToSerial({accuracy, 2024, 3, 5, 0.5}); }), kWrongAccuracy) << accuracy;
}

TEST(DateTimeValue, StartsWithAllFieldsZero) {
  const DateTimeValue value;
  for (const std::int32_t field : {value.Accuracy, value.Year, value.Month, value.Day, value.TimeZone})
    EXPECT_EQ(field, 0);
  EXPECT_EQ(value.Time, 0.0);
}

TEST(DatePatterns, NameTheForms) {
  EXPECT_EQ(kDatePattern, u"yyyy-MM-dd"sv);
  EXPECT_EQ(kTimePattern, u"HH:mm:ss.SSS"sv);
  EXPECT_EQ(kNegativeZonePattern, u"-HH:mm"sv);
  EXPECT_EQ(kPositiveZonePattern, u"+HH:mm"sv);
  EXPECT_EQ(kDateTimePattern, u"yyyy-MM-ddTHH:mm:ss.SSS"sv);
  EXPECT_EQ(kWhiteSpace, u" \t\r\n"sv);
}

TEST(DomStringToWide, NullAndLengthZeroAreEmpty) {
  for (const std::size_t length : {std::size_t{0}, std::size_t{5}, SIZE_MAX})
    EXPECT_TRUE(DomStringToWide(nullptr, length).IsEmpty());
  EXPECT_TRUE(DomStringToWide(u"abc", 0).IsEmpty());
}

TEST(DomStringToWide, CopiesExactlyTheUnitsOfTheLength) {
  char16_t units[] = {u'a', u'b', 0, 0xD800, u'c', u'd'};
  const WideString text = DomStringToWide(units, 5);
  units[0] = u'x';
  ASSERT_EQ(text.size(), 5U);
  EXPECT_EQ(Shown(text), "ab\\u0000\\uD800c");
  EXPECT_EQ(text.data()[5], u'\0');
  EXPECT_EQ(DomStringToWide(u"abc", 2), u"ab");
  EXPECT_EQ(DomStringToWide(u"abc", 3), u"abc");
}

TEST(DomStringToWide, RaisesWhenNoMemoryIsLeft) {
  for (const std::size_t length : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 2, SIZE_MAX / 2 - 1})
    EXPECT_EQ(Thrown([length] { DomStringToWide(u"abc", length); }),
              "EQvException 0x00000000 Failed to allocate string")
        << length;
}

}  // namespace
}  // namespace qv
