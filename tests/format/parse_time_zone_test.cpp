#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "fixtures/thrown.h"
#include "format/text_conversions.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

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

struct Zone {
  std::u16string_view text;
  std::int32_t minutes;
};

TEST(ParseTimeZone, NothingAndZAreZero) {
  EXPECT_EQ(ParseTimeZone(u""), 0);
  EXPECT_EQ(ParseTimeZone(u"Z"), 0);
}

TEST(ParseTimeZone, IsMinutesWithTheSignOfTheFirstCharacter) {
  const Zone rows[] = {{u"+02:00", 120},
                       {u"-02:00", -120},
                       {u"+01:30", 90},
                       {u"-01:30", -90},
                       {u"+00:00", 0},
                       {u"-00:00", 0},
                       {u"-00:30", -30},
                       {u"+2:5", 125},
                       {u"+23:59", 1439},
                       {u"-23:59", -1439},
                       {u"+14:00", 840},
                       {u"-12:00", -720},
                       {u"+:", 0},
                       {u"+:30", 30},
                       {u"-5:", -300},
                       {u"+10:15:30", 615},
                       {u"-10:15:59.9", -615},
                       {u"+00:00:59", 0},
                       {u"+02:00:00:00", 120},
                       {u"+1:30junk", 90},
                       {u"+02:00Z", 120},
                       {u"-02:00 ", -120},
                       {u"+ 1:30", 90},
                       {u"+02:00+03:00", 120}};
  for (const Zone& row : rows) EXPECT_EQ(ParseTimeZone(row.text), row.minutes) << Printed(row.text);
}

TEST(ParseTimeZone, AnyOtherFirstCharacterIsSkippedAndMeansPlus) {
  const Zone rows[] = {{u"02:00", 120},
                       {u"12:30", 150},
                       {u"Z12:00", 720},
                       {u"z02:00", 120},
                       {u"Z-1:-30", -89},
                       {u" -02:00", -119},
                       {u"\uFF0D02:00", 120},
                       {u"\u221202:00", 120},
                       {u"Z+1:30", 90},
                       {u"\xD800"
                        u"02:00"sv,
                        120},
                       {u"\0"
                        u"02:00"sv,
                        120},
                       {u":02:30", 150}};
  for (const Zone& row : rows) EXPECT_EQ(ParseTimeZone(row.text), row.minutes) << Printed(row.text);
}

// A negative time is decoded one millisecond nearer to zero, hence one minute less.
TEST(ParseTimeZone, ASecondSignCountsInTheTime) {
  const Zone rows[] = {{u"+-1:00", -59}, {u"--1:00", 59}, {u"+-1:30", -29}, {u"--1:30", 29},
                       {u"--0:30", -30}, {u"+1:-30", 30}, {u"-1:-30", -30}, {u"-+2:00", -120},
                       {u"++2:00", 120}, {u"+0:-1", 0},   {u"+0:-2", -1},   {u"+-24:00", 0},
                       {u"+-25:00", -59}};
  for (const Zone& row : rows) EXPECT_EQ(ParseTimeZone(row.text), row.minutes) << Printed(row.text);
}

TEST(ParseTimeZone, FieldsAreCutToSixteenBits) {
  const Zone rows[] = {{u"+65546:15", 615}, {u"-65546:65551", -615}, {u"+4294967298:00", 120},
                       {u"+1\0:30"sv, 90},  {u"+\uFF11:30", 30},     {u"+1:30:65541", 90}};
  for (const Zone& row : rows) EXPECT_EQ(ParseTimeZone(row.text), row.minutes) << Printed(row.text);
}

TEST(ParseTimeZone, AWholeDayIsAllowed) {
  const Zone rows[] = {{u"+24:00", 1440}, {u"-24:00", -1440}, {u"+24:00:00", 1440}, {u"-24:00:00", -1440},
                       {u"+24:0", 1440},  {u"24:00", 240},    {u"Z24:00", 1440}};
  for (const Zone& row : rows) EXPECT_EQ(ParseTimeZone(row.text), row.minutes) << Printed(row.text);
}

TEST(ParseTimeZone, RefusesWhatIsNoOffset) {
  const Refused rows[] = {{u"+", kInvalidFormat},      {u"-", kInvalidFormat},
                          {u"+5", kInvalidFormat},     {u"-0530", kInvalidFormat},
                          {u"z", kInvalidFormat},      {u"Z ", kInvalidFormat},
                          {u" Z", kInvalidFormat},     {u"ZZ", kInvalidFormat},
                          {u"UTC", kInvalidFormat},    {u":30", kInvalidFormat},
                          {u" ", kInvalidFormat},      {u"Z\0"sv, kInvalidFormat},
                          {u"\0"sv, kInvalidFormat},   {u"+02\uFF1A00", kInvalidFormat},
                          {u"+02.00", kInvalidFormat}, {u"+25:00", kInvalidTime},
                          {u"-25:00", kInvalidTime},   {u"+24:01", kInvalidTime},
                          {u"-24:01", kInvalidTime},   {u"+24:00:01", kInvalidTime},
                          {u"+24:60", kInvalidTime},   {u"+48:00", kInvalidTime},
                          {u"+12:60", kInvalidTime},   {u"+12:30:60", kInvalidTime},
                          {u"+99:99", kInvalidTime},   {u"+00:00:NaN", kNaN},
                          {u"+00:00:-0", kMinusZero},  {u"+00:00:INF", kInf},
                          {u"-00:00:-INF", kMinusInf}, {u"+24:00:NaN", kNaN}};
  for (const Refused& row : rows)
    EXPECT_EQ(Thrown([&row] { ParseTimeZone(row.text); }), row.thrown) << Printed(row.text);
}

TEST(ParseTimeZone, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ParseTimeZone(u"-01:30"), -90);
  EXPECT_EQ(ParseTimeZone(u"+01:30:5.9e1"), 90);
}

}  // namespace
}  // namespace qv
