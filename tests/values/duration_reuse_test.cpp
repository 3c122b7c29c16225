// One duration that reads several texts: what an earlier one leaves in it.
#include <gtest/gtest.h>

#include "values/duration_state.h"

namespace qv {
namespace {

constexpr char kAllFields[] = "1/2/3 4:5:6.5";

class DurationReuse : public testing::Test {
 protected:
  DurationReuse() { full_.SetText(u"P1Y2M3DT4H5M6.5S"); }

  static void ExpectRead(DurationImpl& duration, const WideString& text, const std::string& state) {
    EXPECT_EQ(Reading(duration, text), "nothing") << Shown(text);
    EXPECT_EQ(State(duration), state) << Shown(text);
  }
  static void ExpectRefused(DurationImpl& duration, const WideString& text, const char* thrown,
                            const std::string& state) {
    EXPECT_EQ(Reading(duration, text), thrown) << Shown(text);
    EXPECT_EQ(State(duration), state) << Shown(text);
  }
  static DurationImpl WithSign(int sign) {
    DurationImpl duration;
    duration.put_Negative(static_cast<VARIANT_BOOL>(sign));
    return duration;
  }

  DurationImpl full_;
};

TEST_F(DurationReuse, WithoutTTheTimeStays) {
  ExpectRead(full_, u"P7D", "0/0/7 4:5:6.5");
  ExpectRead(full_, u"P", "0/0/0 4:5:6.5");
}

TEST_F(DurationReuse, WithTEveryFieldIsReadAgain) {
  ExpectRead(full_, u"PT8M", "0/0/0 0:8:0");
  ExpectRead(full_, u"P1DT", "0/0/1 0:0:0");
}

TEST_F(DurationReuse, SignStaysWithoutMinusAndMayBeTakenBack) {
  DurationImpl duration;
  duration.SetText(u"-P1D");
  ExpectRefused(duration, u"P2D", kPlaceOfP, "0/0/1 0:0:0 negative -1");
  ExpectRead(duration, u"-P3D", "0/0/3 0:0:0 negative -1");
  duration.put_Negative(VARIANT_FALSE);
  ExpectRead(duration, u"P2D", "0/0/2 0:0:0");
}

// A negative object wants its "P" in second place and drops whatever is first.
TEST_F(DurationReuse, NegativeObjectTakesAnyUnitForTheMinus) {
  for (const char16_t* text : {u"1P2D", u"XP2D", u" P2D", u"+P2D", u"TP2D"}) {
    DurationImpl duration = WithSign(-1);
    ExpectRead(duration, text, "0/0/2 0:0:0 negative -1");
  }
  for (const char16_t* text :
       {u"P1D", u"PP1D", u"P", u"12P3D", u"1D", u"", static_cast<const char16_t*>(nullptr)}) {
    DurationImpl duration = WithSign(-1);
    ExpectRefused(duration, text, kPlaceOfP, "0/0/0 0:0:0 negative -1");
  }
}

// Neither place of "P" is asked for, and the first unit is dropped.
TEST_F(DurationReuse, OddSignTakesAnyTextAndDropsItsFirstUnit) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"P1D", "0/0/1 0:0:0 negative 5"},  {u"12D", "0/0/2 0:0:0 negative 5"},
      {u"1P2D", "0/0/2 0:0:0 negative 5"}, {u"XY3D", "0/0/3 0:0:0 negative 5"},
      {u"PP1D", "0/0/1 0:0:0 negative 5"}, {u"1D", "0/0/0 0:0:0 negative 5"},
      {u"D", "0/0/0 0:0:0 negative 5"},    {u"P1DT2H", "0/0/1 2:0:0 negative 5"},
      {u"", "0/0/0 0:0:0 negative 5"},     {u"-P1D", "0/0/1 0:0:0 negative -1"}};
  for (const auto& [text, state] : rows) {
    DurationImpl duration = WithSign(5);
    ExpectRead(duration, text, state);
  }
  DurationImpl refusing = WithSign(5);
  EXPECT_EQ(Reading(refusing, u"P-1D"), kMinus);
  for (const int sign : {1, 2, -2, 32767, -32768}) {
    DurationImpl duration = WithSign(sign);
    ExpectRead(duration, u"P1D", "0/0/1 0:0:0 negative " + std::to_string(sign));
  }
}

// A "T" in front separates nothing: the text counts as one without "T".
TEST_F(DurationReuse, TThatBecomesTheFirstUnitLeavesTheTime) {
  full_.put_Negative(5);
  ExpectRead(full_, u"PT7H", "0/0/0 4:5:6.5 negative 5");
  ExpectRead(full_, u"PT7M3D", "0/0/3 4:5:6.5 negative 5");
}

TEST_F(DurationReuse, RefusedTextLeavesTheCounts) {
  for (const char16_t* text : {u"p9d", u"P-9D", u"9D", u"", u"XP9D"}) {
    DurationImpl duration = full_;
    EXPECT_NE(Reading(duration, text), "nothing") << Shown(text);
    EXPECT_EQ(State(duration), kAllFields) << Shown(text);
  }
}

TEST_F(DurationReuse, MinusIsKeptOnceItHasBeenSeenInFront) {
  DurationImpl duration;
  ExpectRefused(duration, u"-1D", kPlaceOfP, "0/0/0 0:0:0 negative -1");
  DurationImpl unseen;
  EXPECT_NE(Reading(unseen, u"-p1d"), "nothing");
  ExpectRefused(unseen, u"P-1D", kMinus, "0/0/0 0:0:0");
}

TEST_F(DurationReuse, TextsPastTheSettersChecksAreKept) {
  DurationImpl duration;
  ExpectRead(duration, u"-P32768DT-5S", "0/0/-32768 0:0:-5 negative -1");
  EXPECT_EQ(Shown(duration.GetText()), "-P-32768DT-5S");
}

}  // namespace
}  // namespace qv
