// Seconds and times of day in texts.
#include <cmath>
#include <limits>

#include "format/date_time_texts.h"
#include "support/comma_locale.h"

namespace qv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

void ExpectSeconds(double value, TextList texts) {
  ExpectRead(ParseSeconds, value, texts);
}
// A zero without sign.
void ExpectPlainZero(TextList texts) {
  ExpectSeconds(0.0, texts);
  for (const std::u16string_view text : texts)
    EXPECT_FALSE(std::signbit(ParseSeconds(text))) << Printed(text);
}

TEST(ParseSeconds, WithoutPointOrExponentAWholeNumberAsAtoiReadsIt) {
  ExpectSeconds(0.0, {u"", u"0", u"00", u"abc", u"- 5", u"--5", u"0x10", u"\uFF15", u"\u0665",
                      u"\xD800"
                      u"5"sv,
                      u"\0"
                      u"5"sv});
  ExpectSeconds(5.0, {u"5", u"05", u"+5", u" 5", u"\t\n5", u"5 ", u"5 6", u"4294967301", u"5\u00E9",
                      u"5\0"
                      u"6"sv});
  ExpectSeconds(-5.0, {u"-5"});
  ExpectSeconds(30.0, {u"30", u"30Z", u"30:45"});
  ExpectSeconds(1.0, {u"1,5"});
  ExpectSeconds(60.0, {u"60", u"60-", u"60+"});
  ExpectSeconds(65541.0, {u"65541"});
  ExpectSeconds(-2147483648.0, {u"2147483648"});
}

TEST(ParseSeconds, WithAPointWhatAtofReads) {
  ExpectSeconds(1.5, {u" 1.5", u"1.5x", u"1.5.5", u"1.5e", u"0x1.8",
                      u"1.5\0"
                      u"5"sv});
  ExpectSeconds(0.0, {u".", u"e1.5", u"x.y", u"\uFF15.5", u"\xD800.5"sv});
  ExpectSeconds(15.0, {u"1.5e1", u"1.5E1"});
  ExpectSeconds(30.5, {u"30.5"});
  ExpectSeconds(30.0, {u"30."});
  ExpectSeconds(0.5, {u".5"});
  ExpectSeconds(-1.5, {u"-1.5"});
  ExpectSeconds(10.0, {u"1.e1"});
  ExpectSeconds(59.0, {u"590.e-1"});
  ExpectSeconds(3.0, {u"0x1.8p1"});
  ExpectSeconds(5.0, {u"5 ."});
  ExpectSeconds(1.0, {u"1\0.5"sv});
  ExpectSeconds(4294967301.0, {u"4294967301."});
  ExpectSeconds(60.0, {u"59.99999999999999999999"});
  ExpectSeconds(kInfinity, {u"1.0e400", u"INF.", u"inf."});
  ExpectSeconds(-kInfinity, {u"-1.0e400", u"-INF."});
  EXPECT_TRUE(std::isnan(ParseSeconds(u"NaN.")));
  EXPECT_TRUE(std::isnan(ParseSeconds(u"nan.5")));
}

TEST(ParseSeconds, AnExponentWithoutAPointIsZero) {
  ExpectPlainZero({u"1e1", u"1E1", u"5e0", u"30e", u"e", u"E", u"-5e1", u"5 sec", u"0x1e", u"30\0e"sv,
                   u"1e400", u"-1e1", u"Never", u"99999e99999"});
}

TEST(ParseSeconds, RefusesFourTextsAsAWhole) {
  ExpectThrown(ParseSeconds, kNaN, {u"NaN"});
  ExpectThrown(ParseSeconds, kMinusZero, {u"-0"});
  ExpectThrown(ParseSeconds, kInf, {u"INF"});
  ExpectThrown(ParseSeconds, kMinusInf, {u"-INF"});
}

TEST(ParseSeconds, TextsThatOnlyResembleTheRefusedAreNumbers) {
  ExpectPlainZero({u"nan", u"NAN", u"NaN ", u" NaN", u"-NaN", u"NaN\0"sv, u"inf", u"Inf", u"INF ", u"+INF",
                   u"-inf", u"INFINITY", u"-INFI", u"-00", u" -0", u"-0 ", u"+0", u"-0x"});
  ExpectPlainZero({u"-0\0"sv});
}

TEST(ParseSeconds, ZeroWithAPointKeepsItsSign) {
  EXPECT_TRUE(std::signbit(ParseSeconds(u"-0.0")));
  EXPECT_TRUE(std::signbit(ParseSeconds(u"-0.")));
  EXPECT_FALSE(std::signbit(ParseSeconds(u"0")));
}

TEST(ParseSeconds, LongTextsAreNumbersToo) {
  const std::u16string nines(100000, u'9');
  const std::u16string zeros(100000, u'0');
  ExpectSeconds(-1.0, {nines});  // the low 32 bits
  ExpectSeconds(kInfinity, {nines + u"."});
  ExpectSeconds(7.0, {zeros + u"7"});
  ExpectSeconds(7.5, {zeros + u"7.5"});
}

void ExpectTime(double seconds, TextList texts) {
  ExpectRead(ParseTimeOfDay, seconds * 1000.0 / 86400000.0, texts);
}

TEST(ParseTimeOfDay, IsHourMinuteAndSecond) {
  ExpectTime(36930.0, {u"10:15:30", u"010:015:030", u"10:15:30:45", u"10:15:30:", u" 10 : 15 : 30 ",
                       u"\n10:15:30\n", u"10h:15m:30s", u"+10:+15:+30", u"10:15:30Z"});
  ExpectTime(36900.0, {u"10:15", u"10:15:", u"10.9:15.9", u"10:15Z", u"10:15:0"});
  ExpectTime(0.0, {u"00:00:00", u":", u"::", u"a:b:c"});
  ExpectTime(900.0, {u":15", u"0x10:15", u"T10:15"});
  ExpectTime(43200.0, {u"12:00"});
  ExpectTime(86399.0, {u"23:59:59"});
  ExpectTime(3723.0, {u"1:2:3"});
  ExpectTime(36000.0, {u"10:"});
  ExpectTime(30.0, {u"::30"});
  ExpectTime(36030.0, {u"10::30"});
  ExpectTime(4500.0, {u"1e1:15"});
}

TEST(ParseTimeOfDay, DropsFractionsOfASecond) {
  ExpectTime(36930.0, {u"10:15:30.5", u"10:15:30.999999", u"10:15:30.5:9"});
  ExpectTime(36900.0, {u"10:15:.9", u"10:15:0.9999", u"10:15:-0.9", u"10:15:-0.0"});
  ExpectTime(36959.0, {u"10:15:59.999"});
  ExpectTime(36895.0, {u"10:15:-5.9"});
  ExpectTime(86399.0, {u"23:59:59.999"});
}

TEST(ParseTimeOfDay, ReadsSecondsWithPointAndExponentOnly) {
  ExpectTime(36900.0, {u"10:15:1e1", u"10:15:30e0", u"10:15:99e9", u"10:15:0x10", u"10:15:seven"});
  ExpectTime(36915.0, {u"10:15:1.5e1"});
  ExpectTime(36959.0, {u"10:15:590.e-1"});
  ExpectTime(36910.0, {u"10:15:1.0e+1"});
  ExpectTime(36903.0, {u"10:15:0x1.8p1"});
}

TEST(ParseTimeOfDay, NegativeFieldsCountAsTheyAre) {
  ExpectTime(1800.0, {u"-0:30", u"--1:30"});
  ExpectTime(-3600.0, {u"-1:00"});
  ExpectTime(-1800.0, {u"-1:30"});
  ExpectTime(35100.0, {u"10:-15"});
  ExpectTime(36895.0, {u"10:15:-5"});
  ExpectTime(-86400.0, {u"-24:00"});
  ExpectTime(-36930.0, {u"-10:-15:-30"});
}

TEST(ParseTimeOfDay, FieldsAreCutToSixteenBits) {
  ExpectTime(36900.0,
             {u"65546:15", u"-65526:15", u"10:65551", u"10:15:-2147483648.", u"4294967306:4294967311"});
  ExpectTime(36905.0, {u"10:15:65541", u"10:15:65541.5", u"10:15:4294967301", u"10:15:-65531.5"});
  ExpectTime(36930.0, {u"10:65551:30"});
  ExpectTime(11364.0, {u"10:15:40000", u"10:15:40000.9"});
  ExpectTime(4132.0, {u"10:15:98304"});
  ExpectTime(36899.0, {u"10:15:2147483647."});
  ExpectTime(-91929600.0, {u"40000:00"});
  ExpectTime(-117964800.0, {u"32768:00"});
  ExpectTime(36000.0 - 25536.0 * 60.0, {u"10:40000"});
}

TEST(ParseTimeOfDay, UnitsBeyondAsciiAreNoDigitsAndNoColons) {
  ExpectTime(900.0, {u"\uFF11\uFF10:15", u"\xD800:15"sv, u"\u00A010:15", u"\0:15"sv});
  ExpectTime(36030.0, {u"10:\u0661\u0665:30"});
  ExpectTime(36900.0, {u"10:15:\uFF13", u"10:15:\xDC00"sv,
                       u"10:15:\0"
                       u"5"sv});
  ExpectTime(36930.0, {u"10\0:15:30"sv, u"10:15\0:30"sv, u"10:15:30\0.9"sv, u"10:15:30.\0"sv});
}

TEST(ParseTimeOfDay, RefusesOtherTexts) {
  ExpectThrown(ParseTimeOfDay, kInvalidFormat,
               {u"", u"10", u"1015", u"T", u"10.15.30", u"10-15", u"2024-03-05", u"Z", u" ", u"10\uFF1A15",
                u"\0"sv, u"\xD800"sv, u"NaN"});
  ExpectThrown(ParseTimeOfDay, kInvalidTime,
               {u"24:00", u"24:00:00", u"25:00", u"23:60", u"23:59:60", u"10:15:60", u"10:15:6.0e1",
                u"65560:00", u"2024-03-05 10:15", u"10:15:32767", u"10:15:59.99999999999999999999"});
  ExpectThrown(ParseTimeOfDay, kInvalidTime,
               {u"10:15:4294967301.", u"10:15:2147483648.", u"10:15:-2147483649.", u"10:15:1.0e400",
                u"10:15:-1.0e400", u"10:15:INF.", u"10:15:-INF.", u"10:15:NaN.", u"10:15:1.0e10"});
  ExpectThrown(ParseTimeOfDay, kNaN, {u"10:15:NaN", u"24:00:NaN"});
  ExpectThrown(ParseTimeOfDay, kMinusZero, {u"10:15:-0", u"99:99:-0"});
  ExpectThrown(ParseTimeOfDay, kInf, {u"10:15:INF"});
  ExpectThrown(ParseTimeOfDay, kMinusInf, {u"10:15:-INF"});
}

TEST(ParseTimeOfDay, LongTextsAreReadToTheirEnd) {
  ExpectTime(36930.0, {std::u16string(100000, u'0') + u"10:15:30"});
  ExpectTime(36931.0, {u"10:15:30." + std::u16string(100000, u'9')});  // rounds up in the reading
  ExpectTime(0.0, {std::u16string(100000, u':')});
  ExpectTime(-3600.0, {std::u16string(100000, u'9') + u":00"});
}

TEST(ParseTime, KnowsNoLocale) {
  const CommaLocale comma;
  ExpectSeconds(1.5, {u"1.5", u"1.500"});
  ExpectSeconds(1.0, {u"1,5"});
  ExpectTime(36915.0, {u"10:15:1.5e1"});
  ExpectTime(36900.0, {u"10:15:1,5e1"});
}

}  // namespace
}  // namespace qv
