#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "fixtures/thrown.h"
#include "format/text_conversions.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr char kInvalidFormat[] = "EQvException 0x00000000 Invalid time format";
constexpr char kInvalidTime[] = "EQvException 0x00000000 Invalid argument to time encode";
constexpr char kNaN[] = "EQvException 0x00000000 Unable to convert NaN float value";
constexpr char kMinusZero[] = "EQvException 0x00000000 Unable to convert -0 float value";
constexpr char kInf[] = "EQvException 0x00000000 Unable to convert INF float value";
constexpr char kMinusInf[] = "EQvException 0x00000000 Unable to convert -INF float value";

std::string Printed(std::u16string_view text) {
  return testing::PrintToString(WideString(text.substr(0, 60)));
}

struct Refused {
  std::u16string_view text;
  const char* thrown;
};

struct Seconds {
  std::u16string_view text;
  double value;
};

struct TimeOfDay {
  std::u16string_view text;
  double seconds;
};

TEST(ParseSeconds, WithoutPointOrExponentAWholeNumberAsAtoiReadsIt) {
  const Seconds rows[] = {{u"", 0.0},
                          {u"0", 0.0},
                          {u"00", 0.0},
                          {u"5", 5.0},
                          {u"05", 5.0},
                          {u"30", 30.0},
                          {u"-5", -5.0},
                          {u"+5", 5.0},
                          {u" 5", 5.0},
                          {u"\t\n5", 5.0},
                          {u"5 ", 5.0},
                          {u"5 6", 5.0},
                          {u"30Z", 30.0},
                          {u"1,5", 1.0},
                          {u"30:45", 30.0},
                          {u"abc", 0.0},
                          {u"- 5", 0.0},
                          {u"--5", 0.0},
                          {u"0x10", 0.0},
                          {u"60", 60.0},
                          {u"65541", 65541.0},
                          {u"4294967301", 5.0},
                          {u"2147483648", -2147483648.0},
                          {u"\uFF15", 0.0},
                          {u"\u0665", 0.0},
                          {u"5\u00E9", 5.0},
                          {u"\xD800"
                           u"5"sv,
                           0.0},
                          {u"\0"
                           u"5"sv,
                           0.0},
                          {u"5\0"
                           u"6"sv,
                           5.0}};
  for (const Seconds& row : rows) EXPECT_EQ(ParseSeconds(row.text), row.value) << Printed(row.text);
}

TEST(ParseSeconds, WithAPointWhatAtofReads) {
  const Seconds rows[] = {{u"30.5", 30.5},
                          {u"30.", 30.0},
                          {u".5", 0.5},
                          {u".", 0.0},
                          {u"-1.5", -1.5},
                          {u" 1.5", 1.5},
                          {u"1.5x", 1.5},
                          {u"1.5.5", 1.5},
                          {u"1.5e1", 15.0},
                          {u"1.5E1", 15.0},
                          {u"1.e1", 10.0},
                          {u"590.e-1", 59.0},
                          {u"1.5e", 1.5},
                          {u"e1.5", 0.0},
                          {u"x.y", 0.0},
                          {u"0x1.8", 1.5},
                          {u"0x1.8p1", 3.0},
                          {u"5 .", 5.0},
                          {u"4294967301.", 4294967301.0},
                          {u"59.99999999999999999999", 60.0},
                          {u"1.0e400", kInfinity},
                          {u"-1.0e400", -kInfinity},
                          {u"INF.", kInfinity},
                          {u"-INF.", -kInfinity},
                          {u"inf.", kInfinity},
                          {u"1\0.5"sv, 1.0},
                          {u"1.5\0"
                           u"5"sv,
                           1.5},
                          {u"\uFF15.5", 0.0},
                          {u"\xD800.5"sv, 0.0}};
  for (const Seconds& row : rows) EXPECT_EQ(ParseSeconds(row.text), row.value) << Printed(row.text);
  EXPECT_TRUE(std::isnan(ParseSeconds(u"NaN.")));
  EXPECT_TRUE(std::isnan(ParseSeconds(u"nan.5")));
}

TEST(ParseSeconds, AnExponentWithoutAPointIsZero) {
  for (const std::u16string_view text :
       {u"1e1"sv, u"1E1"sv, u"5e0"sv, u"30e"sv, u"e"sv, u"E"sv, u"-5e1"sv, u"5 sec"sv, u"0x1e"sv, u"30\0e"sv,
        u"1e400"sv, u"-1e1"sv, u"Never"sv, u"99999e99999"sv}) {
    EXPECT_EQ(ParseSeconds(text), 0.0) << Printed(text);
    EXPECT_FALSE(std::signbit(ParseSeconds(text))) << Printed(text);
  }
}

TEST(ParseSeconds, RefusesFourTextsAsAWhole) {
  const Refused rows[] = {{u"NaN", kNaN}, {u"-0", kMinusZero}, {u"INF", kInf}, {u"-INF", kMinusInf}};
  for (const Refused& row : rows)
    EXPECT_EQ(Thrown([&row] { ParseSeconds(row.text); }), row.thrown) << Printed(row.text);
}

TEST(ParseSeconds, TextsThatOnlyResembleTheRefusedAreNumbers) {
  for (const std::u16string_view text :
       {u"nan"sv, u"NAN"sv, u"NaN "sv, u" NaN"sv, u"-NaN"sv, u"NaN\0"sv, u"inf"sv, u"Inf"sv, u"INF "sv,
        u"+INF"sv, u"-inf"sv, u"INFINITY"sv, u"-INFI"sv, u"-00"sv, u" -0"sv, u"-0 "sv, u"+0"sv, u"-0x"sv,
        u"-0\0"sv}) {
    EXPECT_EQ(ParseSeconds(text), 0.0) << Printed(text);
    EXPECT_FALSE(std::signbit(ParseSeconds(text))) << Printed(text);
  }
}

TEST(ParseSeconds, ZeroWithAPointKeepsItsSign) {
  EXPECT_TRUE(std::signbit(ParseSeconds(u"-0.0")));
  EXPECT_TRUE(std::signbit(ParseSeconds(u"-0.")));
  EXPECT_FALSE(std::signbit(ParseSeconds(u"0")));
}

TEST(ParseSeconds, LongTextsAreNumbersToo) {
  EXPECT_EQ(ParseSeconds(std::u16string(100000, u'9')), -1.0);  // the low 32 bits
  EXPECT_EQ(ParseSeconds(std::u16string(100000, u'9') + u"."), kInfinity);
  EXPECT_EQ(ParseSeconds(std::u16string(100000, u'0') + u"7"), 7.0);
  EXPECT_EQ(ParseSeconds(std::u16string(100000, u'0') + u"7.5"), 7.5);
}

void ExpectTime(const TimeOfDay& row) {
  EXPECT_EQ(ParseTimeOfDay(row.text), row.seconds * 1000.0 / 86400000.0) << Printed(row.text);
}

TEST(ParseTimeOfDay, IsHourMinuteAndSecond) {
  const TimeOfDay rows[] = {{u"10:15:30", 36930.0},
                            {u"10:15", 36900.0},
                            {u"00:00:00", 0.0},
                            {u"12:00", 43200.0},
                            {u"23:59:59", 86399.0},
                            {u"1:2:3", 3723.0},
                            {u"010:015:030", 36930.0},
                            {u"10:15:", 36900.0},
                            {u"10:", 36000.0},
                            {u":15", 900.0},
                            {u":", 0.0},
                            {u"::", 0.0},
                            {u"::30", 30.0},
                            {u"10::30", 36030.0},
                            {u"10:15:30:45", 36930.0},
                            {u"10:15:30:", 36930.0},
                            {u" 10 : 15 : 30 ", 36930.0},
                            {u"\n10:15:30\n", 36930.0},
                            {u"10h:15m:30s", 36930.0},
                            {u"a:b:c", 0.0},
                            {u"+10:+15:+30", 36930.0},
                            {u"10.9:15.9", 36900.0},
                            {u"1e1:15", 4500.0},
                            {u"0x10:15", 900.0},
                            {u"T10:15", 900.0},
                            {u"10:15:30Z", 36930.0},
                            {u"10:15Z", 36900.0},
                            {u"10:15:0", 36900.0}};
  for (const TimeOfDay& row : rows) ExpectTime(row);
}

TEST(ParseTimeOfDay, DropsFractionsOfASecond) {
  const TimeOfDay rows[] = {{u"10:15:30.5", 36930.0},   {u"10:15:30.999999", 36930.0},
                            {u"10:15:.9", 36900.0},     {u"10:15:0.9999", 36900.0},
                            {u"10:15:59.999", 36959.0}, {u"10:15:-0.9", 36900.0},
                            {u"10:15:-5.9", 36895.0},   {u"10:15:-0.0", 36900.0},
                            {u"23:59:59.999", 86399.0}, {u"10:15:30.5:9", 36930.0}};
  for (const TimeOfDay& row : rows) ExpectTime(row);
}

TEST(ParseTimeOfDay, ReadsSecondsWithPointAndExponentOnly) {
  const TimeOfDay rows[] = {
      {u"10:15:1e1", 36900.0},     {u"10:15:30e0", 36900.0},    {u"10:15:99e9", 36900.0},
      {u"10:15:1.5e1", 36915.0},   {u"10:15:590.e-1", 36959.0}, {u"10:15:1.0e+1", 36910.0},
      {u"10:15:0x1.8p1", 36903.0}, {u"10:15:0x10", 36900.0},    {u"10:15:seven", 36900.0}};
  for (const TimeOfDay& row : rows) ExpectTime(row);
}

TEST(ParseTimeOfDay, NegativeFieldsCountAsTheyAre) {
  const TimeOfDay rows[] = {{u"-1:00", -3600.0},        {u"-1:30", -1800.0},    {u"-0:30", 1800.0},
                            {u"10:-15", 35100.0},       {u"10:15:-5", 36895.0}, {u"-24:00", -86400.0},
                            {u"-10:-15:-30", -36930.0}, {u"--1:30", 1800.0}};
  for (const TimeOfDay& row : rows) ExpectTime(row);
}

TEST(ParseTimeOfDay, FieldsAreCutToSixteenBits) {
  const TimeOfDay rows[] = {{u"65546:15", 36900.0},
                            {u"-65526:15", 36900.0},
                            {u"10:65551", 36900.0},
                            {u"10:65551:30", 36930.0},
                            {u"10:15:65541", 36905.0},
                            {u"10:15:65541.5", 36905.0},
                            {u"10:15:4294967301", 36905.0},
                            {u"10:15:40000", 11364.0},
                            {u"10:15:40000.9", 11364.0},
                            {u"10:15:98304", 4132.0},
                            {u"10:15:-65531.5", 36905.0},
                            {u"10:15:2147483647.", 36899.0},
                            {u"10:15:-2147483648.", 36900.0},
                            {u"40000:00", -91929600.0},
                            {u"32768:00", -117964800.0},
                            {u"4294967306:4294967311", 36900.0},
                            {u"10:40000", 36000.0 - 25536.0 * 60.0}};
  for (const TimeOfDay& row : rows) ExpectTime(row);
}

TEST(ParseTimeOfDay, UnitsBeyondAsciiAreNoDigitsAndNoColons) {
  const TimeOfDay rows[] = {{u"\uFF11\uFF10:15", 900.0},
                            {u"10:\u0661\u0665:30", 36030.0},
                            {u"10:15:\uFF13", 36900.0},
                            {u"\xD800:15"sv, 900.0},
                            {u"10:15:\xDC00"sv, 36900.0},
                            {u"\u00A010:15", 900.0},
                            {u"10\0:15:30"sv, 36930.0},
                            {u"10:15\0:30"sv, 36930.0},
                            {u"10:15:30\0.9"sv, 36930.0},
                            {u"10:15:30.\0"sv, 36930.0},
                            {u"\0:15"sv, 900.0},
                            {u"10:15:\0"
                             u"5"sv,
                             36900.0}};
  for (const TimeOfDay& row : rows) ExpectTime(row);
}

TEST(ParseTimeOfDay, RefusesTextsWithoutColon) {
  for (const std::u16string_view text :
       {u""sv, u"10"sv, u"1015"sv, u"T"sv, u"10.15.30"sv, u"10-15"sv, u"2024-03-05"sv, u"Z"sv, u" "sv,
        u"10\uFF1A15"sv, u"\0"sv, u"\xD800"sv, u"NaN"sv}) {
    EXPECT_EQ(Thrown([text] { ParseTimeOfDay(text); }), kInvalidFormat) << Printed(text);
  }
}

TEST(ParseTimeOfDay, RefusesWhatIsNoTime) {
  const Refused rows[] = {{u"24:00", kInvalidTime},
                          {u"24:00:00", kInvalidTime},
                          {u"25:00", kInvalidTime},
                          {u"23:60", kInvalidTime},
                          {u"23:59:60", kInvalidTime},
                          {u"10:15:60", kInvalidTime},
                          {u"10:15:6.0e1", kInvalidTime},
                          {u"10:15:59.99999999999999999999", kInvalidTime},
                          {u"65560:00", kInvalidTime},
                          {u"2024-03-05 10:15", kInvalidTime},
                          {u"10:15:32767", kInvalidTime},
                          {u"10:15:4294967301.", kInvalidTime},
                          {u"10:15:2147483648.", kInvalidTime},
                          {u"10:15:-2147483649.", kInvalidTime},
                          {u"10:15:1.0e400", kInvalidTime},
                          {u"10:15:-1.0e400", kInvalidTime},
                          {u"10:15:INF.", kInvalidTime},
                          {u"10:15:-INF.", kInvalidTime},
                          {u"10:15:NaN.", kInvalidTime},
                          {u"10:15:1.0e10", kInvalidTime},
                          {u"10:15:NaN", kNaN},
                          {u"10:15:-0", kMinusZero},
                          {u"10:15:INF", kInf},
                          {u"10:15:-INF", kMinusInf},
                          {u"24:00:NaN", kNaN},
                          {u"99:99:-0", kMinusZero}};
  for (const Refused& row : rows)
    EXPECT_EQ(Thrown([&row] { ParseTimeOfDay(row.text); }), row.thrown) << Printed(row.text);
}

TEST(ParseTimeOfDay, LongTextsAreReadToTheirEnd) {
  ExpectTime({std::u16string(100000, u'0') + u"10:15:30", 36930.0});
  ExpectTime({u"10:15:30." + std::u16string(100000, u'9'), 36931.0});  // rounds up in the reading
  ExpectTime({std::u16string(100000, u':'), 0.0});
  ExpectTime({std::u16string(100000, u'9') + u":00", -3600.0});
}

TEST(ParseTime, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ParseSeconds(u"1.5"), 1.5);
  EXPECT_EQ(ParseSeconds(u"1,5"), 1.0);
  EXPECT_EQ(ParseSeconds(u"1.500"), 1.5);
  ExpectTime({u"10:15:1.5e1", 36915.0});
  ExpectTime({u"10:15:1,5e1", 36900.0});
}

}  // namespace
}  // namespace qv
