#include "support/numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <vector>

#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct ReadInt {
  std::u16string_view text;
  std::int32_t value;
};

void ExpectInts(const std::vector<ReadInt>& rows) {
  for (const ReadInt& row : rows)
    EXPECT_EQ(ParseInt(row.text), row.value) << testing::PrintToString(WideString(row.text));
}

TEST(ParseInt, BlanksSignAndDigitsAsFarAsTheyGo) {
  ExpectInts({{u"0", 0},
              {u"42", 42},
              {u"-42", -42},
              {u"+42", 42},
              {u"007", 7},
              {u" \t\n\v\f\r42", 42},
              {u"  -42", -42},
              {u"12abc", 12},
              {u"12.9", 12},
              {u"1,000", 1},
              {u"1e3", 1},
              {u"0x10", 0},
              {u"1 2", 1},
              {u"2147483647", 2147483647},
              {u"-2147483648", INT32_MIN}});
}

TEST(ParseInt, NoDigitsGiveZero) {
  ExpectInts({{u"", 0},
              {u"abc", 0},
              {u"-", 0},
              {u"+", 0},
              {u"--5", 0},
              {u"+-5", 0},
              {u"-+5", 0},
              {u"- 5", 0},
              {u".5", 0},
              {u"   ", 0}});
}

TEST(ParseInt, BeyondThirtyTwoBitsTheLowOnesRemain) {
  ExpectInts({{u"2147483648", INT32_MIN},
              {u"-2147483649", 2147483647},
              {u"4294967295", -1},
              {u"4294967296", 0},
              {u"4294967301", 5},
              {u"-4294967301", -5},
              {u"99999999999", 1215752191},
              {u"9223372036854775807", -1}});
}

TEST(ParseInt, BeyondSixtyFourBitsTheLowOnesRemain) {
  ExpectInts({{u"9223372036854775808", 0},
              {u"18446744073709551615", -1},
              {u"18446744073709551617", 1},
              {u"-18446744073709551617", -1},
              {u"36893488147419103237", 5},
              {u"10000000000000000000000000000000000000000", 0}});
  EXPECT_EQ(ParseInt(std::u16string(100, u'9')), -1);
  EXPECT_EQ(ParseInt(u"-" + std::u16string(100, u'9')), 1);
}

TEST(ParseInt, UnitsThatOnlyLookLikeDigitsEndIt) {
  ExpectInts({{u"\uFF11", 0},
              {u"\u0131", 0},  // its low byte is that of "1"
              {u"1\u0132", 1},
              {u"\u0661", 0},
              {u"\u0120"
               u"5",
               0},  // its low byte is that of a blank
              {u"\u00A0"
               u"5",
               0},
              {u"\u2003"
               u"5",
               0},
              {u"\u012D"
               u"5",
               0},  // its low byte is that of "-"
              {u"1\0"
               u"2"sv,
               1},
              {u"\0"
               u"12"sv,
               0}});
}

struct ReadDouble {
  std::u16string_view text;
  double value;
};

void ExpectDoubles(const std::vector<ReadDouble>& rows) {
  for (const ReadDouble& row : rows)
    EXPECT_EQ(ParseDouble(row.text), row.value) << testing::PrintToString(WideString(row.text));
}

TEST(ParseDouble, DecimalTextsAsFarAsTheyGo) {
  ExpectDoubles({{u"0", 0.0},
                 {u"3.14", 3.14},
                 {u"+1.5", 1.5},
                 {u"  -2.5e3xyz", -2500.0},
                 {u" \t\n\v\f\r1.5", 1.5},
                 {u".5", 0.5},
                 {u"5.", 5.0},
                 {u"-.5e1", -5.0},
                 {u"1E2", 100.0},
                 {u"1e+2", 100.0},
                 {u"1e-2", 0.01},
                 {u"1,5", 1.0},
                 {u"1.5.5", 1.5},
                 {u"1 2", 1.0},
                 {u"0000001", 1.0}});
}

TEST(ParseDouble, BrokenExponentIsLeftBehind) {
  ExpectDoubles({{u"1e", 1.0}, {u"1e+", 1.0}, {u"1e-", 1.0}, {u"2.5ex", 2.5}, {u"1e 5", 1.0}});
}

TEST(ParseDouble, NoNumberGivesZero) {
  ExpectDoubles({{u"", 0.0},
                 {u"abc", 0.0},
                 {u".", 0.0},
                 {u"-", 0.0},
                 {u"+-1", 0.0},
                 {u"--1", 0.0},
                 {u"- 1", 0.0},
                 {u"e5", 0.0},
                 {u".e5", 0.0},
                 {u"in", 0.0},
                 {u"na", 0.0},
                 {u"\uFF11", 0.0},
                 {u"\u0131", 0.0},
                 {u"\u00A0"
                  u"1",
                  0.0}});
}

TEST(ParseDouble, UnitsBeyondAsciiEndIt) {
  ExpectDoubles({{u"1.5\u0131", 1.5},
                 {u"1\u012E"
                  u"5",
                  1.0},
                 {u"2\U0001F600", 2.0},
                 {u"1.5\0"
                  u"6"sv,
                  1.5}});
}

TEST(ParseDouble, HexadecimalIsRead) {
  ExpectDoubles({{u"0x10", 16.0},
                 {u"0X1P4", 16.0},
                 {u"0x1.8p1", 3.0},
                 {u"-0x1p-1", -0.5},
                 {u"0x.8", 0.5},
                 {u"0x1p", 1.0},
                 {u"0x", 0.0},
                 {u"0xg", 0.0}});
}

TEST(ParseDouble, InfinityIsRead) {
  ExpectDoubles({{u"inf", kInfinity},
                 {u"INF", kInfinity},
                 {u"+Infinity", kInfinity},
                 {u"-inf", -kInfinity},
                 {u" -INFINITYx", -kInfinity},
                 {u"infinit", kInfinity}});
}

TEST(ParseDouble, NotANumberIsRead) {
  for (const std::u16string_view text : {u"nan"sv, u"NaN"sv, u"-nan"sv, u" NAN"sv, u"nan(12)"sv, u"nanx"sv})
    EXPECT_TRUE(std::isnan(ParseDouble(text))) << testing::PrintToString(WideString(text));
}

TEST(ParseDouble, OutOfRangeBecomesInfinityOrZero) {
  ExpectDoubles({{u"1e400", kInfinity},
                 {u"-1e400", -kInfinity},
                 {u"1e99999999999999999999", kInfinity},
                 {u"1.7976931348623159e308", kInfinity},
                 {u"1e-400", 0.0},
                 {u"1e-99999999999999999999", 0.0},
                 {u"0e99999999999999999999", 0.0},
                 {u"0x1p99999", kInfinity}});
  EXPECT_EQ(ParseDouble(std::u16string(400, u'9')), kInfinity);
}

TEST(ParseDouble, SignSurvivesZeroAndUnderflow) {
  EXPECT_TRUE(std::signbit(ParseDouble(u"-0")));
  EXPECT_TRUE(std::signbit(ParseDouble(u"-1e-400")));
  EXPECT_FALSE(std::signbit(ParseDouble(u"0")));
}

TEST(ParseDouble, IsRoundedCorrectly) {
  ExpectDoubles({{u"0.1", 0.1},
                 {u"0.30000000000000004", 0.30000000000000004},
                 {u"9007199254740993", 9007199254740992.0},
                 {u"2.2250738585072011e-308", 2.2250738585072011e-308},
                 {u"4.9406564584124654e-324", DBL_TRUE_MIN},
                 {u"1.7976931348623157e308", DBL_MAX},
                 {u"1.7976931348623158e308", DBL_MAX}});
  EXPECT_EQ(ParseDouble(u"1." + std::u16string(1000, u'0') + u"1"), 1.0);
  EXPECT_EQ(ParseDouble(u"0." + std::u16string(350, u'0') + u"1e351"), 1.0);
}

TEST(DecimalText, IsPlainDecimal) {
  EXPECT_EQ(DecimalText(0).view(), u"0"sv);
  EXPECT_EQ(DecimalText(-7).view(), u"-7"sv);
  EXPECT_EQ(DecimalText(1234567).view(), u"1234567"sv);
  EXPECT_EQ(DecimalText(INT64_MAX).view(), u"9223372036854775807"sv);
  EXPECT_EQ(DecimalText(INT64_MIN).view(), u"-9223372036854775808"sv);
}

struct Written {
  double value;
  std::u16string_view text;
};

TEST(GeneralText, HasSixSignificantDigits) {
  const Written rows[] = {
      {0.0, u"0"},
      {1.0, u"1"},
      {-2.5, u"-2.5"},
      {3.14159265, u"3.14159"},
      {0.1, u"0.1"},
      {123456.0, u"123456"},
      {123456.789, u"123457"},
      {100000.0, u"100000"},
      {999999.5, u"1e+06"},
      {1000000.0, u"1e+06"},
      {1234567.0, u"1.23457e+06"},
      {0.0001, u"0.0001"},
      {0.00001, u"1e-05"},
      {1e-7, u"1e-07"},
      {0.000123456789, u"0.000123457"},
      {1e15, u"1e+15"},
      {1e100, u"1e+100"},
      {-1.5e-200, u"-1.5e-200"},
      {DBL_MAX, u"1.79769e+308"},
      {DBL_TRUE_MIN, u"4.94066e-324"},
      {-0.0, u"-0"},
  };
  for (const Written& row : rows) EXPECT_EQ(GeneralText(row.value).view(), row.text);
}

TEST(GeneralText, NamesWhatIsNoNumber) {
  EXPECT_EQ(GeneralText(std::nan("")).view(), u"nan"sv);
  EXPECT_EQ(GeneralText(kInfinity).view(), u"inf"sv);
  EXPECT_EQ(GeneralText(-kInfinity).view(), u"-inf"sv);
}

TEST(Numbers, KnowNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ParseDouble(u"1.5"), 1.5);
  EXPECT_EQ(ParseDouble(u"1,5"), 1.0);
  EXPECT_EQ(ParseInt(u"1.234"), 1);
  EXPECT_EQ(DecimalText(1234567).view(), u"1234567"sv);
  EXPECT_EQ(GeneralText(1234.5).view(), u"1234.5"sv);
}

}  // namespace
}  // namespace qv
