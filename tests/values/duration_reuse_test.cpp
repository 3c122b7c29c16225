// One duration that reads several texts: what an earlier one leaves behind.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "values/duration_impl.h"
#include "values/duration_state.h"

namespace qv {
namespace {

constexpr char kMinus[] =
    "EQvException 0x00000000 Invalid duration format:  '-' is allowd only in the beginning of the string.";
constexpr char kPlaceOfP[] =
    "EQvException 0x00000000 Invalid duration format:  'P' is allowd only in the beginning of the string or "
    "after '-'.";

std::string Reading(DurationImpl& duration, const WideString& text) {
  return Thrown([&] { duration.SetText(text); });
}

TEST(DurationReuse, WithoutTTheTimeStays) {
  DurationImpl duration;
  duration.SetText(u"P1Y2M3DT4H5M6.5S");
  duration.SetText(u"P7D");
  EXPECT_EQ(State(duration), "0/0/7 4:5:6.5");
  duration.SetText(u"P");
  EXPECT_EQ(State(duration), "0/0/0 4:5:6.5");
}

TEST(DurationReuse, WithTEveryFieldIsReadAnew) {
  DurationImpl duration;
  duration.SetText(u"P1Y2M3DT4H5M6.5S");
  duration.SetText(u"PT8M");
  EXPECT_EQ(State(duration), "0/0/0 0:8:0");
  duration.SetText(u"P1DT");
  EXPECT_EQ(State(duration), "0/0/1 0:0:0");
}

TEST(DurationReuse, SignStaysWithoutMinus) {
  DurationImpl duration;
  duration.SetText(u"-P1D");
  EXPECT_EQ(Reading(duration, u"P2D"), kPlaceOfP);
  EXPECT_EQ(State(duration), "0/0/1 0:0:0 negative -1");
  EXPECT_EQ(Reading(duration, u"-P3D"), "nothing");
  EXPECT_EQ(State(duration), "0/0/3 0:0:0 negative -1");
}

// A negative object wants its "P" in second place and drops whatever stands first.
TEST(DurationReuse, NegativeObjectTakesAnyUnitForTheMinus) {
  for (const char16_t* text : {u"1P2D", u"XP2D", u" P2D", u"+P2D", u"TP2D"}) {
    DurationImpl duration;
    duration.put_Negative(VARIANT_TRUE);
    EXPECT_EQ(Reading(duration, text), "nothing") << Shown(text);
    EXPECT_EQ(State(duration), "0/0/2 0:0:0 negative -1") << Shown(text);
  }
}

TEST(DurationReuse, NegativeObjectRefusesAnotherPlaceOfP) {
  for (const char16_t* text : {u"P1D", u"PP1D", u"P", u"12P3D", u"1D", u""}) {
    DurationImpl duration;
    duration.put_Negative(VARIANT_TRUE);
    EXPECT_EQ(Reading(duration, text), kPlaceOfP) << Shown(text);
    EXPECT_EQ(State(duration), "0/0/0 0:0:0 negative -1") << Shown(text);
  }
  DurationImpl duration;
  duration.put_Negative(VARIANT_TRUE);
  EXPECT_EQ(Reading(duration, WideString()), kPlaceOfP);
}

TEST(DurationReuse, SignThatIsTakenBackAllowsPlainTexts) {
  DurationImpl duration;
  duration.SetText(u"-P1D");
  duration.put_Negative(VARIANT_FALSE);
  EXPECT_EQ(Reading(duration, u"P2D"), "nothing");
  EXPECT_EQ(State(duration), "0/0/2 0:0:0");
}

struct Odd {
  const char16_t* text;
  const char* state;
};

// Neither place of "P" is asked for, and the first unit goes.
TEST(DurationReuse, OddSignTakesAnyTextAndDropsItsFirstUnit) {
  const Odd rows[] = {
      {u"P1D", "0/0/1 0:0:0 negative 5"},  {u"12D", "0/0/2 0:0:0 negative 5"},
      {u"1P2D", "0/0/2 0:0:0 negative 5"}, {u"XY3D", "0/0/3 0:0:0 negative 5"},
      {u"PP1D", "0/0/1 0:0:0 negative 5"}, {u"1D", "0/0/0 0:0:0 negative 5"},
      {u"D", "0/0/0 0:0:0 negative 5"},    {u"P1DT2H", "0/0/1 2:0:0 negative 5"},
      {u"", "0/0/0 0:0:0 negative 5"},     {u"-P1D", "0/0/1 0:0:0 negative -1"},
  };
  for (const Odd& row : rows) {
    DurationImpl duration;
    duration.put_Negative(5);
    EXPECT_EQ(Reading(duration, row.text), "nothing") << Shown(row.text);
    EXPECT_EQ(State(duration), row.state) << Shown(row.text);
  }
  DurationImpl duration;
  duration.put_Negative(5);
  EXPECT_EQ(Reading(duration, u"P-1D"), kMinus);
}

TEST(DurationReuse, AnyOddSignDoesSo) {
  for (const int sign : {1, 2, -2, 32767, -32768}) {
    DurationImpl duration;
    duration.put_Negative(static_cast<VARIANT_BOOL>(sign));
    EXPECT_EQ(Reading(duration, u"P1D"), "nothing") << sign;
    EXPECT_EQ(State(duration), "0/0/1 0:0:0 negative " + std::to_string(sign));
  }
}

// A "T" in front separates nothing: the text counts as one without "T".
TEST(DurationReuse, TThatBecomesTheFirstUnitLeavesTheTime) {
  DurationImpl duration;
  duration.SetText(u"P1DT4H5M6S");
  duration.put_Negative(5);
  EXPECT_EQ(Reading(duration, u"PT7H"), "nothing");
  EXPECT_EQ(State(duration), "0/0/0 4:5:6 negative 5");
  EXPECT_EQ(Reading(duration, u"PT7M3D"), "nothing");
  EXPECT_EQ(State(duration), "0/0/3 4:5:6 negative 5");
}

TEST(DurationReuse, RefusedTextLeavesTheCounts) {
  for (const char16_t* text : {u"p9d", u"P-9D", u"9D", u"", u"XP9D"}) {
    DurationImpl duration;
    duration.SetText(u"P1Y2M3DT4H5M6.5S");
    EXPECT_NE(Reading(duration, text), "nothing") << Shown(text);
    EXPECT_EQ(State(duration), "1/2/3 4:5:6.5") << Shown(text);
  }
}

TEST(DurationReuse, MinusIsKeptOnceItHasBeenSeenInFront) {
  DurationImpl duration;
  EXPECT_EQ(Reading(duration, u"-1D"), kPlaceOfP);
  EXPECT_EQ(State(duration), "0/0/0 0:0:0 negative -1");
  DurationImpl unseen;
  EXPECT_NE(Reading(unseen, u"-p1d"), "nothing");
  EXPECT_EQ(Reading(unseen, u"P-1D"), kMinus);
  EXPECT_EQ(State(unseen), "0/0/0 0:0:0");
}

TEST(DurationReuse, TextsPastTheSettersChecksAreKept) {
  DurationImpl duration;
  duration.SetText(u"-P32768DT-5S");
  EXPECT_EQ(State(duration), "0/0/-32768 0:0:-5 negative -1");
  EXPECT_EQ(Shown(duration.GetText()), "-P-32768DT-5S");
}

}  // namespace
}  // namespace qv
