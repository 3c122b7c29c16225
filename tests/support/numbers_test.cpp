// Numbers from texts and to texts.
#include "support/numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;
using TextList = std::initializer_list<std::u16string_view>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

void ExpectInt(std::int32_t value, TextList texts) {
  for (const std::u16string_view text : texts) EXPECT_EQ(ParseInt(text), value) << Shown(WideString(text));
}

TEST(ParseInt, BlanksSignAndDigitsAsFarAsTheyGo) {
  ExpectInt(0, {u"0", u"0x10"});
  ExpectInt(42, {u"42", u"+42", u" \t\n\v\f\r42"});
  ExpectInt(-42, {u"-42", u"  -42"});
  ExpectInt(12, {u"12abc", u"12.9"});
  ExpectInt(1, {u"1,000", u"1e3", u"1 2"});
  ExpectInt(7, {u"007"});
  ExpectInt(2147483647, {u"2147483647"});
  ExpectInt(INT32_MIN, {u"-2147483648"});
}

TEST(ParseInt, NoDigitsGiveZero) {
  ExpectInt(0, {u"", u"abc", u"-", u"+", u"--5", u"+-5", u"-+5", u"- 5", u".5", u"   "});
}

TEST(ParseInt, BeyondItsRangeTheLowBitsRemain) {
  ExpectInt(INT32_MIN, {u"2147483648"});
  ExpectInt(2147483647, {u"-2147483649"});
  ExpectInt(0, {u"4294967296", u"9223372036854775808", u"10000000000000000000000000000000000000000"});
  ExpectInt(1, {u"18446744073709551617", u"-" + std::u16string(100, u'9')});
  ExpectInt(-1, {u"4294967295", u"9223372036854775807", u"18446744073709551615", u"-18446744073709551617",
                 std::u16string(100, u'9')});
  ExpectInt(5, {u"4294967301", u"36893488147419103237"});
  ExpectInt(-5, {u"-4294967301"});
  ExpectInt(1215752191, {u"99999999999"});
}

// The low byte of U+0131 is that of "1", of U+0120 that of a blank, of U+012D that of "-". \u takes
// four digits, so "5" follows them.
TEST(ParseInt, UnitsThatOnlyLookLikeDigitsEndIt) {
  ExpectInt(0, {u"\uFF11", u"\u0131", u"\u0661", u"\u01205", u"\u00A05", u"\u20035", u"\u012D5",
                u"\0"
                u"12"sv});
  ExpectInt(1, {u"1\u0132",
                u"1\0"
                u"2"sv});
}

void ExpectDouble(double value, TextList texts) {
  for (const std::u16string_view text : texts) EXPECT_EQ(ParseDouble(text), value) << Shown(WideString(text));
}

TEST(ParseDouble, DecimalTextsAsFarAsTheyGo) {
  ExpectDouble(1.5, {u"+1.5", u" \t\n\v\f\r1.5", u"1.5.5", u"1.5\u0131",
                     u"1.5\0"
                     u"6"sv});
  ExpectDouble(1.0, {u"1,5", u"1 2", u"0000001", u"1\u012E5"});
  ExpectDouble(100.0, {u"1E2", u"1e+2"});
  const std::pair<std::u16string_view, double> rows[] = {
      {u"3.14", 3.14},  {u"  -2.5e3xyz", -2500.0}, {u".5", 0.5},         {u"5.", 5.0},
      {u"-.5e1", -5.0}, {u"1e-2", 0.01},           {u"2\U0001F600", 2.0}};
  for (const auto& [text, value] : rows) ExpectDouble(value, {text});
}

TEST(ParseDouble, ABrokenExponentEndsIt) {
  ExpectDouble(1.0, {u"1e", u"1e+", u"1e-", u"1e 5"});
  ExpectDouble(2.5, {u"2.5ex"});
}

TEST(ParseDouble, NoNumberGivesZero) {
  ExpectDouble(0.0, {u"0", u"", u"abc", u".", u"-", u"+-1", u"--1", u"- 1", u"e5", u".e5", u"in", u"na",
                     u"\uFF11", u"\u0131", u"\u00A01"});
}

TEST(ParseDouble, HexadecimalIsRead) {
  const std::pair<std::u16string_view, double> rows[] = {
      {u"0x10", 16.0}, {u"0X1P4", 16.0}, {u"0x1.8p1", 3.0}, {u"-0x1p-1", -0.5},
      {u"0x.8", 0.5},  {u"0x1p", 1.0},   {u"0x", 0.0},      {u"0xg", 0.0}};
  for (const auto& [text, value] : rows) ExpectDouble(value, {text});
}

TEST(ParseDouble, InfinityIsReadAndReachedBeyondTheRange) {
  ExpectDouble(kInfinity, {u"inf", u"INF", u"+Infinity", u"infinit", u"1e400", u"1e99999999999999999999",
                           u"1.7976931348623159e308", u"0x1p99999", std::u16string(400, u'9')});
  ExpectDouble(-kInfinity, {u"-inf", u" -INFINITYx", u"-1e400"});
  ExpectDouble(0.0, {u"1e-400", u"1e-99999999999999999999", u"0e99999999999999999999"});
}

TEST(ParseDouble, NotANumberIsRead) {
  for (const std::u16string_view text : {u"nan"sv, u"NaN"sv, u"-nan"sv, u" NAN"sv, u"nan(12)"sv, u"nanx"sv})
    EXPECT_TRUE(std::isnan(ParseDouble(text))) << Shown(WideString(text));
}

TEST(ParseDouble, SignSurvivesZeroAndUnderflow) {
  EXPECT_TRUE(std::signbit(ParseDouble(u"-0")));
  EXPECT_TRUE(std::signbit(ParseDouble(u"-1e-400")));
  EXPECT_FALSE(std::signbit(ParseDouble(u"0")));
}

TEST(ParseDouble, IsRoundedCorrectly) {
  ExpectDouble(0.1, {u"0.1"});
  ExpectDouble(0.30000000000000004, {u"0.30000000000000004"});
  ExpectDouble(9007199254740992.0, {u"9007199254740993"});
  ExpectDouble(2.2250738585072011e-308, {u"2.2250738585072011e-308"});
  ExpectDouble(DBL_TRUE_MIN, {u"4.9406564584124654e-324"});
  ExpectDouble(DBL_MAX, {u"1.7976931348623157e308", u"1.7976931348623158e308"});
  ExpectDouble(1.0,
               {u"1." + std::u16string(1000, u'0') + u"1", u"0." + std::u16string(350, u'0') + u"1e351"});
}

TEST(DecimalText, IsPlainDecimal) {
  const std::pair<std::int64_t, std::u16string_view> rows[] = {{0, u"0"},
                                                               {-7, u"-7"},
                                                               {1234567, u"1234567"},
                                                               {INT64_MAX, u"9223372036854775807"},
                                                               {INT64_MIN, u"-9223372036854775808"}};
  for (const auto& [value, text] : rows) EXPECT_EQ(DecimalText(value).view(), text);
}

void ExpectSixSignificantDigits() {
  const std::pair<double, std::u16string_view> rows[] = {{0.0, u"0"},
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
                                                         {1e15, u"1e+15"},
                                                         {1e100, u"1e+100"},
                                                         {-1.5e-200, u"-1.5e-200"},
                                                         {DBL_MAX, u"1.79769e+308"},
                                                         {-0.0, u"-0"},
                                                         {std::nan(""), u"nan"},
                                                         {kInfinity, u"inf"},
                                                         {-kInfinity, u"-inf"}};
  for (const auto& [value, text] : rows) EXPECT_EQ(GeneralText(value).view(), text);
  EXPECT_EQ(GeneralText(0.000123456789).view(), u"0.000123457"sv);
  EXPECT_EQ(GeneralText(DBL_TRUE_MIN).view(), u"4.94066e-324"sv);
}

TEST(GeneralText, HasSixSignificantDigits) {
  ExpectSixSignificantDigits();
}

TEST(Numbers, KnowNoLocale) {
  const CommaLocale comma;
  ExpectDouble(1.5, {u"1.5"});
  ExpectDouble(1.0, {u"1,5"});
  ExpectInt(1, {u"1.234"});
  EXPECT_EQ(DecimalText(1234567).view(), u"1234567"sv);
  EXPECT_EQ(GeneralText(1234.5).view(), u"1234.5"sv);
  ExpectSixSignificantDigits();
}

}  // namespace
}  // namespace qv
