#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "format/text_conversions.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"
#include "support/string_helpers.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kMorning = 36930000.0 / 86400000.0;  // 10:15:30
constexpr char kInvalidValue[] = "EQvException 0x00000000 Invalid value";
constexpr char kWrongAccuracy[] = "EQvException 0x00000000 Unable to convert a value with the given accuracy";
constexpr char kInvalidDate[] = "EQvException 0x00000000 Invalid argument to date encode";
constexpr char kInvalidTime[] = "EQvException 0x00000000 Invalid argument to time decode";

DateTimeValue Value(std::int32_t accuracy, std::int32_t year, std::int32_t month, std::int32_t day,
                    double time = 0, std::int32_t zone = 0) {
  DateTimeValue value;
  value.Accuracy = accuracy;
  value.Year = year;
  value.Month = month;
  value.Day = day;
  value.Time = time;
  value.TimeZone = zone;
  return value;
}

struct Written {
  DateTimeValue value;
  const char* text;
};

struct TimeWritten {
  double milliseconds;
  const char* text;
};

struct ZoneWritten {
  std::int32_t minutes;
  const char* text;
};

struct Serial {
  DateTimeValue value;
  double serial;
};

TEST(WriteDateTimeValue, CenturyYearAndMonthArePlain) {
  const Written rows[] = {{Value(0, 2000, 3, 5), "20"},
                          {Value(0, 1999, 0, 0), "19"},
                          {Value(0, 50, 0, 0), "0"},
                          {Value(0, -50, 0, 0), "0"},
                          {Value(0, -1999, 0, 0), "-19"},
                          {Value(0, 0, 0, 0), "0"},
                          {Value(0, 1200, 0, 0, 0.5, 90), "12"},
                          {Value(0, 1234567, 0, 0), "12345"},
                          {Value(1, 2024, 3, 5), "2024"},
                          {Value(1, 5, 0, 0), "5"},
                          {Value(1, 0, 0, 0), "0"},
                          {Value(1, -5, 0, 0), "-5"},
                          {Value(1, 12345, 0, 0), "12345"},
                          {Value(1, 2024, 3, 5, 0.5, 90), "2024"},
                          {Value(1, INT32_MIN, 0, 0), "-2147483648"},
                          {Value(1, INT32_MAX, 0, 0), "2147483647"},
                          {Value(2, 2024, 5, 6), "--05--"},
                          {Value(2, 0, 12, 0), "--12--"},
                          {Value(2, 0, 0, 0), "--00--"},
                          {Value(2, 0, 123, 0), "--123--"},
                          {Value(2, 0, 5, 0, 0.5, 90), "--05--"}};
  for (const Written& row : rows) EXPECT_EQ(Shown(WriteDateTimeValue(row.value)), row.text);
}

TEST(WriteDateTimeValue, DateHasLeadingZeros) {
  const Written rows[] = {{Value(3, 2024, 3, 5), "2024-03-05"},
                          {Value(3, 2024, 12, 31), "2024-12-31"},
                          {Value(3, 5, 1, 1), "0005-01-01"},
                          {Value(3, 24, 10, 9), "0024-10-09"},
                          {Value(3, 0, 0, 0), "0000-00-00"},
                          {Value(3, 12345, 123, 456), "12345-123-456"},
                          {Value(3, 999, 1, 10), "0999-01-10"},
                          {Value(3, 2024, 2, 31), "2024-02-31"},  // no day is checked
                          {Value(3, 2024, 3, 5, 0.5, 90), "2024-03-05"},
                          {Value(3, 2024, 3, 5, kNotANumber), "2024-03-05"},
                          {Value(3, -5, -1, -12), "00-5--1--12"}};  // the zeros stand on the left of all
  for (const Written& row : rows) EXPECT_EQ(Shown(WriteDateTimeValue(row.value)), row.text);
}

TEST(WriteDateTimeValue, TimeHasPlainMilliseconds) {
  const TimeWritten rows[] = {
      {0.0, "00:00:00.0Z"},         {36930000.0, "10:15:30.0Z"},       {36930007.0, "10:15:30.7Z"},
      {36930070.0, "10:15:30.70Z"}, {36930700.0, "10:15:30.700Z"},     {36930999.0, "10:15:30.999Z"},
      {3723004.0, "01:02:03.4Z"},   {43200000.0, "12:00:00.0Z"},       {86399999.0, "23:59:59.999Z"},
      {86399999.6, "24:00:00.0Z"},  {86400000.0, "00:00:00.0Z"},       {0.4, "00:00:00.0Z"},
      {0.6, "00:00:00.1Z"},         {-21600000.0, "-5:-59:-59.-999Z"}, {-1800000.0, "00:-29:-59.-999Z"},
      {-1000.0, "00:00:00.-999Z"}};
  for (const TimeWritten& row : rows) {
    const DateTimeValue value = Value(4, 2024, 3, 5, row.milliseconds / 86400000.0);
    EXPECT_EQ(Shown(WriteDateTimeValue(value)), row.text) << row.milliseconds;
  }
}

TEST(WriteDateTimeValue, TimeIsThatOfTheDayWhateverTheDay) {
  EXPECT_EQ(Shown(WriteDateTimeValue(Value(4, 0, 0, 0, 45356.5))), "12:00:00.0Z");
  EXPECT_EQ(Shown(WriteDateTimeValue(Value(4, 0, 0, 0, 45356.0 + kMorning))), "10:15:30.0Z");
  EXPECT_EQ(Shown(WriteDateTimeValue(Value(4, 0, 0, 0, 1e300))), "00:00:00.0Z");
  EXPECT_EQ(Shown(WriteDateTimeValue(Value(4, 0, 0, 0, 0.999999999999))), "24:00:00.0Z");
}

TEST(WriteDateTimeValue, ZoneHasNoLeadingZeros) {
  const ZoneWritten rows[] = {{0, "12:00:00.0Z"},
                              {90, "12:00:00.0+1:30"},
                              {65, "12:00:00.0+1:5"},
                              {60, "12:00:00.0+1:0"},
                              {5, "12:00:00.0+0:5"},
                              {1, "12:00:00.0+0:1"},
                              {-1, "12:00:00.0-0:1"},
                              {-65, "12:00:00.0-1:5"},
                              {-90, "12:00:00.0-1:30"},
                              {-720, "12:00:00.0-12:0"},
                              {840, "12:00:00.0+14:0"},
                              {1439, "12:00:00.0+23:59"},
                              {1440, "12:00:00.0+24:0"},
                              {-6001, "12:00:00.0-100:1"},
                              {INT32_MAX, "12:00:00.0+35791394:7"},
                              {INT32_MIN, "12:00:00.0-35791394:8"}};
  for (const ZoneWritten& row : rows)
    EXPECT_EQ(Shown(WriteDateTimeValue(Value(4, 0, 0, 0, 0.5, row.minutes))), row.text);
}

TEST(WriteDateTimeValue, DateAndTimeAreJoinedByT) {
  const Written rows[] = {{Value(5, 2024, 3, 5, kMorning), "2024-03-05T10:15:30.0Z"},
                          {Value(5, 2024, 3, 5), "2024-03-05T00:00:00.0Z"},
                          {Value(5, 5, 1, 1, 0.5, -90), "0005-01-01T12:00:00.0-1:30"},
                          {Value(5, 2024, 3, 5, 45356.5, 65), "2024-03-05T12:00:00.0+1:5"},
                          {Value(5, 2024, 3, 5, 0.999999999999), "2024-03-05T24:00:00.0Z"},
                          {Value(5, 12345, 0, 0, 7.0 / 86400000.0), "12345-00-00T00:00:00.7Z"}};
  for (const Written& row : rows) EXPECT_EQ(Shown(WriteDateTimeValue(row.value)), row.text);
}

TEST(WriteDateTimeValue, RefusesOtherForms) {
  for (const std::int32_t accuracy : {6, 7, 8, 100, -1, INT32_MAX, INT32_MIN}) {
    const DateTimeValue value = Value(accuracy, 2024, 3, 5, 0.5);
    EXPECT_EQ(Thrown([&value] { WriteDateTimeValue(value); }), kInvalidValue) << accuracy;
  }
}

TEST(WriteDateTimeValue, RefusesTimesThatAreNotFinite) {
  for (const std::int32_t accuracy : {4, 5}) {
    for (const double time : {kNotANumber, kInfinity, -kInfinity}) {
      const DateTimeValue value = Value(accuracy, 2024, 3, 5, time);
      EXPECT_EQ(Thrown([&value] { WriteDateTimeValue(value); }), kInvalidTime) << accuracy << " " << time;
    }
  }
}

TEST(DateTimeToSerial, IsTheDayPlusTheTime) {
  const Serial rows[] = {{Value(3, 2024, 3, 5), 45356.0},
                         {Value(3, 1899, 12, 30), 0.0},
                         {Value(5, 2024, 3, 5, 0.5), 45356.5},
                         {Value(5, 2024, 3, 5, kMorning), 45356.0 + kMorning},
                         {Value(3, 2024, 3, 5, 0.5), 45356.5},  // the time counts in a date too
                         {Value(5, 1899, 12, 29, 0.25), -0.75},
                         {Value(4, 0, 0, 0, kMorning), kMorning},
                         {Value(4, 2024, 3, 5, kMorning), kMorning},
                         {Value(4, 2024, 99, 99, 0.5), 0.5},
                         {Value(4, 0, 0, 0, -1064.0), -1064.0},
                         {Value(5, 2024, 3, 5, 2.5), 45358.5}};
  for (const Serial& row : rows) EXPECT_EQ(DateTimeToSerial(row.value), row.serial);
}

TEST(DateTimeToSerial, OffsetsCountInWholeDaysOnly) {
  struct Row {
    std::int32_t minutes;
    double serial;
  };
  const Row rows[] = {{0, 45356.5},
                      {1, 45356.5},
                      {120, 45356.5},
                      {1439, 45356.5},
                      {1440, 45355.5},
                      {2879, 45355.5},
                      {2880, 45354.5},
                      {-1, 45356.5},
                      {-1439, 45356.5},
                      {-1440, 45357.5},
                      {-2879, 45357.5},
                      {-2880, 45358.5},
                      {INT32_MAX, 45356.5 - 1491308.0},
                      {INT32_MIN, 45356.5 + 1491308.0}};
  for (const Row& row : rows) {
    EXPECT_EQ(DateTimeToSerial(Value(5, 2024, 3, 5, 0.5, row.minutes)), row.serial) << row.minutes;
    EXPECT_EQ(DateTimeToSerial(Value(3, 2024, 3, 5, 0.5, row.minutes)), row.serial) << row.minutes;
    EXPECT_EQ(DateTimeToSerial(Value(4, 0, 0, 0, 0.5, row.minutes)), row.serial - 45356.0) << row.minutes;
  }
}

TEST(DateTimeToSerial, FieldsOfTheDateAreCutToSixteenBits) {
  const Serial rows[] = {
      {Value(3, 67560, 3, 5), 45356.0},          {Value(3, -63512, 3, 5), 45356.0},
      {Value(3, 2024, 65539, 5), 45356.0},       {Value(3, 2024, 3, 65541), 45356.0},
      {Value(3, 2024, -65533, -65531), 45356.0}, {Value(5, 67560, 65539, 65541, 0.5), 45356.5}};
  for (const Serial& row : rows) EXPECT_EQ(DateTimeToSerial(row.value), row.serial);
}

TEST(DateTimeToSerial, RefusesDaysThatAreNone) {
  const DateTimeValue rows[] = {
      Value(3, 2023, 2, 29),     Value(3, 0, 1, 1),          Value(3, 10000, 1, 1),    Value(3, 65536, 1, 1),
      Value(3, 40000, 1, 1),     Value(5, 2024, 13, 1, 0.5), Value(5, 2024, 0, 1),     Value(3, 2024, 3, 0),
      Value(3, 2024, 3, 32),     Value(3, 2024, 3, -5),      Value(3, 2024, 65536, 1), Value(3, 0, 0, 0),
      Value(3, INT32_MIN, 1, 1), Value(3, INT32_MAX, 1, 1)};
  for (const DateTimeValue& row : rows) {
    EXPECT_EQ(Thrown([&row] { DateTimeToSerial(row); }), kInvalidDate)
        << row.Year << "/" << row.Month << "/" << row.Day;
  }
}

TEST(DateTimeToSerial, RefusesOtherForms) {
  for (const std::int32_t accuracy : {0, 1, 2, 6, 7, -1, INT32_MAX, INT32_MIN}) {
    const DateTimeValue value = Value(accuracy, 2024, 3, 5, 0.5);
    EXPECT_EQ(Thrown([&value] { DateTimeToSerial(value); }), kWrongAccuracy) << accuracy;
  }
}

TEST(DateTimeValue, StartsWithAllFieldsZero) {
  const DateTimeValue value;
  EXPECT_EQ(value.Accuracy, 0);
  EXPECT_EQ(value.Year, 0);
  EXPECT_EQ(value.Month, 0);
  EXPECT_EQ(value.Day, 0);
  EXPECT_EQ(value.Time, 0.0);
  EXPECT_EQ(value.TimeZone, 0);
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
  EXPECT_TRUE(DomStringToWide(nullptr, 0).IsEmpty());
  EXPECT_TRUE(DomStringToWide(nullptr, 5).IsEmpty());
  EXPECT_TRUE(DomStringToWide(nullptr, SIZE_MAX).IsEmpty());
  EXPECT_TRUE(DomStringToWide(u"abc", 0).IsEmpty());
}

TEST(DomStringToWide, CopiesExactlyTheUnitsOfTheLength) {
  char16_t units[] = {u'a', u'b', 0, 0xD800, u'c', u'd'};
  const WideString text = DomStringToWide(units, 5);
  units[0] = u'x';
  ASSERT_EQ(text.size(), 5u);
  EXPECT_EQ(Shown(text), "ab\\u0000\\uD800c");
  EXPECT_EQ(text.data()[5], u'\0');
  EXPECT_EQ(DomStringToWide(u"abc", 2), u"ab");
  EXPECT_EQ(DomStringToWide(u"abc", 3), u"abc");
}

TEST(DomStringToWide, RaisesWhenNoMemoryIsLeft) {
  for (const std::size_t length : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 2, SIZE_MAX / 2 - 1}) {
    EXPECT_EQ(Thrown([length] { DomStringToWide(u"abc", length); }),
              "EQvException 0x00000000 Failed to allocate string")
        << length;
  }
}

TEST(WriteDateTimeValue, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(Shown(WriteDateTimeValue(Value(1, 2024, 0, 0))), "2024");
  EXPECT_EQ(Shown(WriteDateTimeValue(Value(0, 1234567, 0, 0))), "12345");
  EXPECT_EQ(Shown(WriteDateTimeValue(Value(5, 12345, 3, 5, 36930007.0 / 86400000.0, INT32_MAX))),
            "12345-03-05T10:15:30.7+35791394:7");
}

}  // namespace
}  // namespace qv
