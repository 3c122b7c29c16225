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
constexpr char kNoFullDate[] = "EQvException 0x00000000 Expecting a full date value";
constexpr char kWrongAccuracy[] = "EQvException 0x00000000 Unable to convert a value with the given accuracy";
constexpr char kInvalidFormat[] = "EQvException 0x00000000 Invalid time format";
constexpr char kInvalidTime[] = "EQvException 0x00000000 Invalid argument to time encode";
constexpr char kInvalidDate[] = "EQvException 0x00000000 Invalid argument to date encode";
constexpr char kNaN[] = "EQvException 0x00000000 Unable to convert NaN float value";

std::string Printed(std::u16string_view text) {
  return testing::PrintToString(WideString(text.substr(0, 60)));
}

struct Refused {
  std::u16string_view text;
  const char* thrown;
};

struct Serial {
  std::u16string_view text;
  double value;
};

TEST(ParseSerialDate, IsTheDayAndTheLocalTime) {
  const Serial rows[] = {{u"2024-03-05", 45356.0},
                         {u"2024-02-29", 45351.0},
                         {u"2000-02-29", 36585.0},
                         {u"1899-12-30", 0.0},
                         {u"1899-12-29", -1.0},
                         {u"0001-01-01", -693593.0},
                         {u"9999-12-31", 2958465.0},
                         {u"2024-03-05T10:15:30", 45356.0 + kMorning},
                         {u"2024-03-05T10:15:30.7Z", 45356.0 + kMorning},
                         {u"2024-03-05T10:15:30+02:00", 45356.0 + kMorning},
                         {u"2024-03-05T10:15:30-23:59", 45356.0 + kMorning},
                         {u"2024-03-05T10:15:30+24:00", 45356.0 + kMorning - 1.0},
                         {u"2024-03-05T10:15:30-24:00", 45356.0 + kMorning + 1.0},
                         {u"2024-03-05T+24:00", 45356.0},
                         {u"2024-03-05T12:00", 45356.5},
                         {u"1899-12-29T12:00", -0.5},
                         {u"10:15:30", kMorning},
                         {u"10:15:30+02:00", kMorning},
                         {u"10:15:30Z", kMorning},
                         {u"10:15:30+24:00", kMorning - 1.0},
                         {u"10:15:30-24:00:00", kMorning + 1.0},
                         {u"00:00", 0.0},
                         {u"T12:00", 0.5},
                         {u"40000:00", -1064.0},
                         {u" 2024-03-05 ", 45356.0},
                         {u"2024-03-05junk", 45356.0},
                         {u"67560-03-05", 45356.0},
                         {u"4294969320-65539-65541", 45356.0},
                         {u"65537-01-01", -693593.0}};
  for (const Serial& row : rows) EXPECT_EQ(ParseSerialDate(row.text), row.value) << Printed(row.text);
}

TEST(ParseSerialDate, RefusesTextsThatAreNeitherAFullDateNorATime) {
  for (const std::u16string_view text : {u""sv,        u" "sv,        u"T"sv,
                                         u"20"sv,      u"10"sv,       u"2024"sv,
                                         u"2024-03"sv, u"--05--"sv,   u"-2024-03-05"sv,
                                         u"-12"sv,     u"TZ"sv,       u"+02:00"sv,
                                         u"-1:00"sv,   u"2024-03T"sv, u"2024-03T+24:00"sv,
                                         u"today"sv,   u"20240305"sv, u"2024\uFF0D03\uFF0D05"sv,
                                         u"\0"sv,      u"\xD800"sv}) {
    EXPECT_EQ(Thrown([text] { ParseSerialDate(text); }), kWrongAccuracy) << Printed(text);
  }
}

TEST(ParseSerialDate, RefusesDaysAndTimesThatAreNone) {
  const Refused rows[] = {{u"2023-02-29", kInvalidDate},
                          {u"1900-02-29", kInvalidDate},
                          {u"2024-02-30", kInvalidDate},
                          {u"2024-13-01", kInvalidDate},
                          {u"2024-00-01", kInvalidDate},
                          {u"2024-01-00", kInvalidDate},
                          {u"2024-01-32", kInvalidDate},
                          {u"2024-03--05", kInvalidDate},
                          {u"0000-01-01", kInvalidDate},
                          {u"10000-01-01", kInvalidDate},
                          {u"75536-01-01", kInvalidDate},
                          {u"40000-01-01", kInvalidDate},
                          {u"x-y-z", kInvalidDate},
                          {u"2024-03-", kInvalidDate},
                          {u"2023-02-29T10:15", kInvalidDate},
                          {u"2023-02-29T25:00", kInvalidTime},
                          {u"2023-02-29T10", kInvalidFormat},
                          {u"2024-03-05T24:00:00", kInvalidTime},
                          {u"2024T10:15:00", kNoFullDate},
                          {u"10:15+5", kInvalidFormat},
                          {u"10:15:NaN", kNaN}};
  for (const Refused& row : rows)
    EXPECT_EQ(Thrown([&row] { ParseSerialDate(row.text); }), row.thrown) << Printed(row.text);
}

TEST(ParseSerialDate, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ParseSerialDate(u"2024-03-05T10:15:3.0e1"), 45356.0 + kMorning);
  EXPECT_EQ(ParseSerialDate(u"2024-03-05T10:15:30,9"), 45356.0 + kMorning);
}

}  // namespace
}  // namespace qv
