// Parsing the text form of a duration: what each text sets, and which texts fail.
#include <gtest/gtest.h>

#include "values/duration_state.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

constexpr char kZero[] = "0/0/0 0:0:0";
constexpr char kNegativeZero[] = "0/0/0 0:0:0 negative -1";

void ExpectState(const std::string& state, TextList texts) {
  for (const std::u16string_view text : texts) {
    DurationImpl duration;
    EXPECT_EQ(Reading(duration, WideString(text)), "nothing") << Shown(WideString(text));
    EXPECT_EQ(State(duration), state) << Shown(WideString(text));
  }
}

struct Parsed {
  const char* state;
  std::u16string_view text;
};
template <std::size_t kCount>
void ExpectStates(const Parsed (&rows)[kCount]) {
  for (const Parsed& row : rows) ExpectState(row.state, {row.text});
}

// Each of these with a new object, whose fields stay 0; another test checks the sign.
void ExpectRefused(const char* thrown, TextList texts) {
  for (const std::u16string_view text : texts) {
    DurationImpl duration;
    EXPECT_EQ(Reading(duration, WideString(text)), thrown) << Shown(WideString(text));
    duration.put_Negative(0);
    EXPECT_EQ(State(duration), kZero) << Shown(WideString(text));
  }
}

TEST(DurationText, EachDesignatorSetsItsField) {
  const Parsed rows[] = {
      {"1/0/0 0:0:0", u"P1Y"},    {"0/5/0 0:0:0", u"P5M"},    {"0/0/3 0:0:0", u"P3D"},
      {"0/0/0 4:0:0", u"PT4H"},   {"0/0/0 0:5:0", u"PT5M"},   {"0/0/0 0:0:90", u"PT90S"},
      {"0/5/0 0:6:0", u"P5MT6M"}, {"1/0/0 0:0:1", u"P1YT1S"}, {"0/0/0 1:0:30", u"PT1H30S"}};
  ExpectStates(rows);
  ExpectState("0/0/90 90:90:90", {u"P90DT90H90M90S"});
  ExpectState("1/2/3 4:5:6.5", {u"P1Y2M3DT4H5M6.5S"});
  ExpectState("1/2/3 4:5:6.5 negative -1", {u"-P1Y2M3DT4H5M6.5S"});
}

TEST(DurationText, NothingAfterTheMarksIsAllZeroAndAMinusInFrontSetsTheSign) {
  ExpectState(kZero, {u"P0", u"P", u"PT", u"PYMD", u"PTHMS"});
  ExpectState("0/0/1 0:0:0", {u"P1DT"});
  ExpectState(kNegativeZero, {u"-P0", u"-P", u"-PT"});
  ExpectState("0/0/1 0:0:0 negative -1", {u"-P1D"});
}

TEST(DurationText, DesignatorsOutOfOrderAreReadInTheFixedOrderAndTheFirstOfADoubledOneCounts) {
  ExpectState("3/0/0 0:0:0", {u"P3D1Y"});
  ExpectState("1/0/0 0:0:0", {u"P1M2Y", u"P1Y2Y", u"P1YY2M"});
  ExpectState("0/1/0 0:0:0", {u"P1D2M", u"P1M2M"});
  ExpectState("0/0/1 0:0:0", {u"P1D2D"});
  ExpectState("1/0/3 0:0:0", {u"P1M2Y3D"});
  ExpectState("0/0/0 5:0:0", {u"PT5S3H"});
  ExpectState("0/0/0 1:0:0", {u"PT1M2H", u"PT1H2H"});
  ExpectState("0/0/0 0:1:0", {u"PT1S2M", u"PT1M2M"});
  ExpectState("0/0/0 0:0:1", {u"PT1S2S"});
  ExpectState("0/0/0 2:0:3", {u"PT2M1H3S"});
}

TEST(DurationText, DesignatorsOfTheOtherPartAreIgnored) {
  ExpectState(kZero, {u"P5H", u"P6S", u"P5HT", u"PT5Y"});
  ExpectState("0/0/1 0:0:0", {u"P1DT5D", u"P1D2H"});
  ExpectState("0/0/2 0:0:0", {u"P2H1D"});
}

TEST(DurationText, SecondPCutsWhatIsBeforeIt) {
  const Parsed rows[] = {{kZero, u"PP1D"},           {"1/2/0 0:0:0", u"P1YP2M"},
                         {"0/0/1 0:0:0", u"P1P2D"},  {"1/0/3 0:0:0", u"P1Y2P3D"},
                         {"1/0/0 0:0:0", u"P1Y2PM"}, {"0/0/0 5:0:0", u"PT1P5H"},
                         {"0/0/0 0:5:0", u"PT1P5M"}, {"0/0/0 0:0:1", u"PT1P5S"}};
  ExpectStates(rows);
}

TEST(DurationText, SecondMinusCutsWhatIsBeforeItButForSeconds) {
  const Parsed rows[] = {
      {"0/0/1 0:0:0", u"-P-1D"},     {"0/2/0 0:0:0", u"-P1Y-2M"}, {"0/2/3 0:0:0", u"-P1Y-2M3D"},
      {"0/0/-1 0:0:0", u"-P--1D"},   {"0/0/2 0:0:0", u"-P1-P2D"}, {"0/0/3 0:0:0", u"-P1P2-3D"},
      {"0/0/0 5:0:0", u"-PT-5H"},    {"0/0/0 5:0:0", u"-PT1-5H"}, {"0/0/0 0:5:0", u"-PT-5M"},
      {"0/0/0 0:0:-5", u"-PT-5S"},   {"0/0/0 0:0:1", u"-PT1-5S"}, {"0/0/1 0:0:2", u"-P1DT2H1E-7S"},
      {"0/0/1 2:3:0", u"-P1DT-2H3M"}};
  for (const auto& [state, text] : rows) ExpectState(state + std::string(" negative -1"), {text});
}

// The second of two adjacent ones is not a separator, so the number after it is invalid.
TEST(DurationText, TextAfterASecondTIsIgnoredAndANeighbouringTBelongsToTheTimePart) {
  ExpectState("0/0/0 1:0:0", {u"PT1HT2M", u"PT1HT2HT3M"});
  ExpectState("0/0/1 2:0:0", {u"P1DT2HT3M4S"});
  ExpectState("0/0/0 1:2:0", {u"PT1H2MT"});
  ExpectState(kZero, {u"PT5T6S", u"PTT5H", u"PTT5S", u"PTTT5H", u"PTT5HT6M", u"PTT"});
  ExpectState("0/0/0 0:6:0", {u"PTT5H6M"});
  ExpectState("0/0/1 0:0:0", {u"P1DTT5M"});
}

TEST(DurationText, WholeFieldsStopAtTheFirstOtherUnit) {
  ExpectState("0/0/1 0:0:0", {u"P1E3D", u"P1,5D", u"P1X2D", u"P+1D", u"P1DJUNK"});
  ExpectState(kZero, {u"P.9D", u"P0X10D", u"PXD", u"P++1D"});
  ExpectState("1/0/0 0:0:0", {u"P1.9Y"});
  ExpectState("0/0/0 0:1:0", {u"PT1.5M"});
}

TEST(DurationText, BlanksBeforeANumberDoNotCount) {
  ExpectState("1/0/0 0:0:0", {u"P 1Y", u"P1 Y"});
  ExpectState("1/2/0 0:0:0", {u"P1Y \t\n2M"});
  ExpectState("0/0/1 0:0:0", {u"P1D ", u"P1 2D"});
  ExpectState("0/0/0 0:0:1.5", {u"PT 1.5 S"});
  ExpectState(kZero, {u"P\u00A0"
                      u"1D"});
}

// In "INFINITY" the "T" ends the time part.
TEST(DurationText, SecondsHaveFractionsAndExponents) {
  const Parsed rows[] = {{"1.5", u"PT1.5S"},
                         {"0.5", u"PT.5S"},
                         {"5", u"PT5.S"},
                         {"100", u"PT1E2S"},
                         {"15", u"PT1.5E1S"},
                         {"250", u"PT25E+1S"},
                         {"0.25 negative -1", u"-PT25E-2S"},
                         {"1", u"PT1ES"},
                         {"1", u"PT1,5S"},
                         {"1.5", u"PT1.5.5S"},
                         {"16", u"PT0X10S"},
                         {"inf", u"PT1E999S"},
                         {"inf", u"PTINFS"},
                         {"0", u"PTINFINITYS"},
                         {"nan", u"PTNANS"}};
  for (const auto& [seconds, text] : rows) ExpectState(std::string("0/0/0 0:0:") + seconds, {text});
  ExpectState("0/0/0 2:0:0", {u"PT2HX3S"});
}

TEST(DurationText, OfLongNumbersTheLowSixteenBitsRemain) {
  const Parsed rows[] = {{"0/0/32767 0:0:0", u"P32767D"},      {"0/0/-32768 0:0:0", u"P32768D"},
                         {"0/-1/0 0:0:0", u"P65535M"},         {"0/0/0 1:0:0", u"PT65537H"},
                         {"0/0/0 0:4464:0", u"PT70000M"},      {"0/0/5 0:0:0", u"P4294967301D"},
                         {"0/0/-6145 0:0:0", u"P99999999999D"}};
  ExpectStates(rows);
  ExpectState(kZero, {u"P65536Y", u"P2147483648Y"});
  ExpectState("0/0/1 0:0:0", {u"P00000000000000000000000000000001D"});
  ExpectState("0/0/-1 0:0:0", {u"P" + std::u16string(100000, u'9') + u"D"});
}

TEST(DurationText, VeryLongTextsAreReadToTheirEnd) {
  std::u16string many = u"P";
  for (int i = 0; i < 100000; ++i) many += u"T1Y";
  ExpectState(kZero, {many + u"2D", u"P" + std::u16string(100000, u'P') + u"1D"});
  ExpectState("0/0/1 0:0:0", {u"P" + std::u16string(100000, u' ') + u"1D"});
}

TEST(DurationText, NullUnitEndsANumberAndNotTheText) {
  ExpectState("0/0/1 0:0:0", {u"P1\0"
                              u"2D"sv});
  ExpectState(kZero, {u"P\0"
                      u"12D"sv});
  ExpectState("0/0/1 2:0:0", {u"P1D\0T2H"sv});
  ExpectState("0/0/0 0:0:1.5", {u"PT1.5\0"
                                u"5S"sv});
  ExpectRefused(kCapitals, {u"P1D\0x"sv});
  ExpectRefused(kMinus, {u"P1D\0-"sv});
  ExpectRefused(kPlaceOfP, {u"\0P1D"sv});
}

// A lone surrogate cannot be narrowed, so its number is 0; the others stay.
TEST(DurationText, OnlyAsciiLettersAreLettersAndALoneSurrogateSpoilsItsOwnFieldOnly) {
  ExpectState("0/2/0 0:0:0", {u"P1\xD800"
                              u"Y2M"});
  ExpectState("1/2/0 0:0:0", {u"P1Y2M\xDC00"});
  ExpectState("0/0/1 0:0:0", {u"P1\u00E9D", u"P1D\u00FF", u"P1D\u03B1\u0434\u0131", u"P1D\uFF59"});
  ExpectState(kZero, {u"P\uFF11D"});
  ExpectRefused(kPlaceOfP, {u"\uFF50"
                            u"1D",
                            u"\u0420"
                            u"1D",
                            u"\u2212P1D"});
}

TEST(DurationText, LowerCaseLettersAreRefusedFirstThenAMinusThatIsNotInFront) {
  ExpectRefused(kCapitals, {u"p1d", u"P1d", u"P1Dx", u"Pt1H", u"-p1d", u"x-1D", u"a", u"z", u"PT1.23457e+07S",
                            u"PTinfS"});
  ExpectRefused(kMinus, {u"P-1D", u"P1D-", u" -P1D", u"X-P1D", u"1-", u"PT1H-2M", u"PT1E-7S"});
}

TEST(DurationText, FirstPIsInFrontOrAfterTheMinus) {
  ExpectRefused(kPlaceOfP,
                {u"1D", u"", u" P1D", u"1P2D", u"T1H", u"0", u"-", u"-1D", u"--P1D", u"- P1D", u"+P1D"});
  DurationImpl duration;
  EXPECT_EQ(Reading(duration, WideString()), kPlaceOfP);
  EXPECT_EQ(State(duration), kZero);
}

}  // namespace
}  // namespace qv
