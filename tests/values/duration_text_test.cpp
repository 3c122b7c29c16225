// The text form of a duration, read: what each text sets, and what is refused.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "values/duration_impl.h"
#include "values/duration_state.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr char kCapitals[] =
    "EQvException 0x00000000 Invalid duration format:  only capital letters are allowed for separators.";
constexpr char kMinus[] =
    "EQvException 0x00000000 Invalid duration format:  '-' is allowd only in the beginning of the string.";
constexpr char kPlaceOfP[] =
    "EQvException 0x00000000 Invalid duration format:  'P' is allowd only in the beginning of the string or "
    "after '-'.";

struct Parsed {
  std::u16string_view text;
  const char* state;
};

void ExpectParsed(const std::vector<Parsed>& rows) {
  for (const Parsed& row : rows) {
    DurationImpl duration;
    EXPECT_EQ(Thrown([&] { duration.SetText(row.text); }), "nothing") << Shown(row.text);
    EXPECT_EQ(State(duration), row.state) << Shown(row.text);
  }
}

struct Refused {
  std::u16string_view text;
  const char* words;
};

// Each of these on a fresh object, whose fields stay 0; the sign is looked at elsewhere.
void ExpectRefused(const std::vector<Refused>& rows) {
  for (const Refused& row : rows) {
    DurationImpl duration;
    EXPECT_EQ(Thrown([&] { duration.SetText(row.text); }), row.words) << Shown(row.text);
    duration.put_Negative(0);
    EXPECT_EQ(State(duration), "0/0/0 0:0:0") << Shown(row.text);
  }
}

TEST(DurationText, EachDesignatorSetsItsField) {
  ExpectParsed({{u"P1Y2M3DT4H5M6.5S", "1/2/3 4:5:6.5"},
                {u"P1Y", "1/0/0 0:0:0"},
                {u"P5M", "0/5/0 0:0:0"},
                {u"P3D", "0/0/3 0:0:0"},
                {u"PT4H", "0/0/0 4:0:0"},
                {u"PT5M", "0/0/0 0:5:0"},
                {u"PT90S", "0/0/0 0:0:90"},
                {u"P5MT6M", "0/5/0 0:6:0"},
                {u"P1YT1S", "1/0/0 0:0:1"},
                {u"PT1H30S", "0/0/0 1:0:30"},
                {u"P90DT90H90M90S", "0/0/90 90:90:90"}});
}

TEST(DurationText, NothingBehindTheMarksIsAllZero) {
  ExpectParsed({{u"P0", "0/0/0 0:0:0"},
                {u"P", "0/0/0 0:0:0"},
                {u"PT", "0/0/0 0:0:0"},
                {u"P1DT", "0/0/1 0:0:0"},
                {u"PYMD", "0/0/0 0:0:0"},
                {u"PTHMS", "0/0/0 0:0:0"}});
}

TEST(DurationText, MinusInFrontSetsTheSign) {
  ExpectParsed({{u"-P1D", "0/0/1 0:0:0 negative -1"},
                {u"-P0", "0/0/0 0:0:0 negative -1"},
                {u"-P", "0/0/0 0:0:0 negative -1"},
                {u"-PT", "0/0/0 0:0:0 negative -1"},
                {u"-P1Y2M3DT4H5M6.5S", "1/2/3 4:5:6.5 negative -1"}});
}

TEST(DurationText, DesignatorsOutOfOrderAreReadInTheFixedOrder) {
  ExpectParsed({{u"P3D1Y", "3/0/0 0:0:0"},
                {u"P1M2Y", "1/0/0 0:0:0"},
                {u"P1D2M", "0/1/0 0:0:0"},
                {u"P1M2Y3D", "1/0/3 0:0:0"},
                {u"PT5S3H", "0/0/0 5:0:0"},
                {u"PT1M2H", "0/0/0 1:0:0"},
                {u"PT1S2M", "0/0/0 0:1:0"},
                {u"PT2M1H3S", "0/0/0 2:0:3"}});
}

TEST(DurationText, OfADoubledDesignatorTheFirstCounts) {
  ExpectParsed({{u"P1Y2Y", "1/0/0 0:0:0"},
                {u"P1M2M", "0/1/0 0:0:0"},
                {u"P1D2D", "0/0/1 0:0:0"},
                {u"P1YY2M", "1/0/0 0:0:0"},
                {u"PT1H2H", "0/0/0 1:0:0"},
                {u"PT1M2M", "0/0/0 0:1:0"},
                {u"PT1S2S", "0/0/0 0:0:1"}});
}

TEST(DurationText, DesignatorsOfTheOtherPartAreIgnored) {
  ExpectParsed({{u"P5H", "0/0/0 0:0:0"},
                {u"P6S", "0/0/0 0:0:0"},
                {u"P5HT", "0/0/0 0:0:0"},
                {u"P1DT5D", "0/0/1 0:0:0"},
                {u"PT5Y", "0/0/0 0:0:0"},
                {u"P1D2H", "0/0/1 0:0:0"},
                {u"P2H1D", "0/0/2 0:0:0"}});
}

TEST(DurationText, SecondPCutsWhatStandsBeforeIt) {
  ExpectParsed({{u"PP1D", "0/0/0 0:0:0"},
                {u"P1YP2M", "1/2/0 0:0:0"},
                {u"P1P2D", "0/0/1 0:0:0"},
                {u"P1Y2P3D", "1/0/3 0:0:0"},
                {u"P1Y2PM", "1/0/0 0:0:0"},
                {u"PT1P5H", "0/0/0 5:0:0"},
                {u"PT1P5M", "0/0/0 0:5:0"},
                {u"PT1P5S", "0/0/0 0:0:1"}});
}

TEST(DurationText, SecondMinusCutsWhatStandsBeforeItButForSeconds) {
  ExpectParsed({{u"-P-1D", "0/0/1 0:0:0 negative -1"},
                {u"-P1Y-2M", "0/2/0 0:0:0 negative -1"},
                {u"-P1Y-2M3D", "0/2/3 0:0:0 negative -1"},
                {u"-P--1D", "0/0/-1 0:0:0 negative -1"},
                {u"-P1-P2D", "0/0/2 0:0:0 negative -1"},
                {u"-P1P2-3D", "0/0/3 0:0:0 negative -1"},
                {u"-PT-5H", "0/0/0 5:0:0 negative -1"},
                {u"-PT-5M", "0/0/0 0:5:0 negative -1"},
                {u"-PT-5S", "0/0/0 0:0:-5 negative -1"},
                {u"-PT1-5H", "0/0/0 5:0:0 negative -1"},
                {u"-PT1-5S", "0/0/0 0:0:1 negative -1"},
                {u"-P1DT2H1E-7S", "0/0/1 0:0:2 negative -1"},
                {u"-P1DT-2H3M", "0/0/1 2:3:0 negative -1"}});
}

TEST(DurationText, WhatStandsBehindASecondTIsIgnored) {
  ExpectParsed({{u"PT1HT2M", "0/0/0 1:0:0"},
                {u"P1DT2HT3M4S", "0/0/1 2:0:0"},
                {u"PT1H2MT", "0/0/0 1:2:0"},
                {u"PT1HT2HT3M", "0/0/0 1:0:0"},
                {u"PT5T6S", "0/0/0 0:0:0"}});
}

// The second of two neighbours is not seen as a separator and spoils the number behind it.
TEST(DurationText, NeighbouringTBelongsToTheTimePart) {
  ExpectParsed({{u"PTT5H", "0/0/0 0:0:0"},
                {u"PTT5H6M", "0/0/0 0:6:0"},
                {u"P1DTT5M", "0/0/1 0:0:0"},
                {u"PTT5S", "0/0/0 0:0:0"},
                {u"PTTT5H", "0/0/0 0:0:0"},
                {u"PTT5HT6M", "0/0/0 0:0:0"},
                {u"PTT", "0/0/0 0:0:0"}});
}

TEST(DurationText, WholeFieldsStopAtTheFirstUnitThatIsNoDigit) {
  ExpectParsed({{u"P1.9Y", "1/0/0 0:0:0"},
                {u"P.9D", "0/0/0 0:0:0"},
                {u"PT1.5M", "0/0/0 0:1:0"},
                {u"P1E3D", "0/0/1 0:0:0"},
                {u"P0X10D", "0/0/0 0:0:0"},
                {u"P1,5D", "0/0/1 0:0:0"},
                {u"P1X2D", "0/0/1 0:0:0"},
                {u"PXD", "0/0/0 0:0:0"},
                {u"P+1D", "0/0/1 0:0:0"},
                {u"P++1D", "0/0/0 0:0:0"},
                {u"P1DJUNK", "0/0/1 0:0:0"}});
}

TEST(DurationText, BlanksBeforeANumberDoNotCount) {
  ExpectParsed({{u"P 1Y", "1/0/0 0:0:0"},
                {u"P1 Y", "1/0/0 0:0:0"},
                {u"P1Y \t\n2M", "1/2/0 0:0:0"},
                {u"P1D ", "0/0/1 0:0:0"},
                {u"P1 2D", "0/0/1 0:0:0"},
                {u"PT 1.5 S", "0/0/0 0:0:1.5"},
                {u"P\u00A0"
                 u"1D",
                 "0/0/0 0:0:0"}});
}

TEST(DurationText, SecondsHaveFractionsAndExponents) {
  ExpectParsed({{u"PT1.5S", "0/0/0 0:0:1.5"},
                {u"PT.5S", "0/0/0 0:0:0.5"},
                {u"PT5.S", "0/0/0 0:0:5"},
                {u"PT1E2S", "0/0/0 0:0:100"},
                {u"PT1.5E1S", "0/0/0 0:0:15"},
                {u"PT25E+1S", "0/0/0 0:0:250"},
                {u"-PT25E-2S", "0/0/0 0:0:0.25 negative -1"},
                {u"PT1ES", "0/0/0 0:0:1"},
                {u"PT1,5S", "0/0/0 0:0:1"},
                {u"PT1.5.5S", "0/0/0 0:0:1.5"},
                {u"PT2HX3S", "0/0/0 2:0:0"},
                {u"PT0X10S", "0/0/0 0:0:16"},
                {u"PT1E999S", "0/0/0 0:0:inf"},
                {u"PTINFS", "0/0/0 0:0:inf"},
                {u"PTINFINITYS", "0/0/0 0:0:0"},  // its "T" ends the time part
                {u"PTNANS", "0/0/0 0:0:nan"}});
}

TEST(DurationText, OfLongNumbersTheLowSixteenBitsRemain) {
  ExpectParsed({{u"P32767D", "0/0/32767 0:0:0"},
                {u"P32768D", "0/0/-32768 0:0:0"},
                {u"P65535M", "0/-1/0 0:0:0"},
                {u"P65536Y", "0/0/0 0:0:0"},
                {u"PT65537H", "0/0/0 1:0:0"},
                {u"PT70000M", "0/0/0 0:4464:0"},
                {u"P2147483648Y", "0/0/0 0:0:0"},
                {u"P4294967301D", "0/0/5 0:0:0"},
                {u"P99999999999D", "0/0/-6145 0:0:0"},
                {u"P00000000000000000000000000000001D", "0/0/1 0:0:0"}});
  DurationImpl duration;
  duration.SetText(u"P" + std::u16string(100000, u'9') + u"D");
  EXPECT_EQ(State(duration), "0/0/-1 0:0:0");
}

TEST(DurationText, VeryLongTextsAreReadToTheirEnd) {
  std::u16string many = u"P";
  for (int i = 0; i < 100000; ++i) many += u"T1Y";
  DurationImpl duration;
  duration.SetText(many + u"2D");
  EXPECT_EQ(State(duration), "0/0/0 0:0:0");
  duration.SetText(u"P" + std::u16string(100000, u'P') + u"1D");
  EXPECT_EQ(State(duration), "0/0/0 0:0:0");
  duration.SetText(u"P" + std::u16string(100000, u' ') + u"1D");
  EXPECT_EQ(State(duration), "0/0/1 0:0:0");
}

TEST(DurationText, NullUnitEndsANumberAndNotTheText) {
  ExpectParsed({{u"P1\0"
                 u"2D"sv,
                 "0/0/1 0:0:0"},
                {u"P\0"
                 u"12D"sv,
                 "0/0/0 0:0:0"},
                {u"P1D\0T2H"sv, "0/0/1 2:0:0"},
                {u"PT1.5\0"
                 u"5S"sv,
                 "0/0/0 0:0:1.5"}});
  ExpectRefused({{u"P1D\0x"sv, kCapitals}, {u"P1D\0-"sv, kMinus}, {u"\0P1D"sv, kPlaceOfP}});
}

// A lone surrogate has no narrow form, so its number is none; the others stand.
TEST(DurationText, LoneSurrogateSpoilsItsOwnWholeFieldOnly) {
  ExpectParsed({{u"P1\xD800"
                 u"Y2M",
                 "0/2/0 0:0:0"},
                {u"P1Y2M\xDC00", "1/2/0 0:0:0"}});
}

TEST(DurationText, OnlyAsciiLettersAreLowerCaseLetters) {
  ExpectParsed({{u"P1\u00E9D", "0/0/1 0:0:0"},
                {u"P1D\u00FF", "0/0/1 0:0:0"},
                {u"P1D\u03B1\u0434\u0131", "0/0/1 0:0:0"},
                {u"P\uFF11D", "0/0/0 0:0:0"},
                {u"P1D\uFF59", "0/0/1 0:0:0"}});
  ExpectRefused({{u"\uFF50"
                  u"1D",
                  kPlaceOfP},
                 {u"\u0420"
                  u"1D",
                  kPlaceOfP},
                 {u"\u2212P1D", kPlaceOfP}});
}

TEST(DurationText, AnyLowerCaseLetterIsRefusedFirst) {
  ExpectRefused({{u"p1d", kCapitals},
                 {u"P1d", kCapitals},
                 {u"P1Dx", kCapitals},
                 {u"Pt1H", kCapitals},
                 {u"-p1d", kCapitals},
                 {u"x-1D", kCapitals},
                 {u"a", kCapitals},
                 {u"z", kCapitals},
                 {u"PT1.23457e+07S", kCapitals},
                 {u"PTinfS", kCapitals}});
}

TEST(DurationText, FirstMinusStandsInFrontOrNowhere) {
  ExpectRefused({{u"P-1D", kMinus},
                 {u"P1D-", kMinus},
                 {u" -P1D", kMinus},
                 {u"X-P1D", kMinus},
                 {u"1-", kMinus},
                 {u"PT1H-2M", kMinus},
                 {u"PT1E-7S", kMinus}});
}

TEST(DurationText, FirstPStandsInFrontOrBehindTheMinus) {
  ExpectRefused({{u"1D", kPlaceOfP},
                 {u"", kPlaceOfP},
                 {u" P1D", kPlaceOfP},
                 {u"1P2D", kPlaceOfP},
                 {u"T1H", kPlaceOfP},
                 {u"0", kPlaceOfP},
                 {u"-", kPlaceOfP},
                 {u"-1D", kPlaceOfP},
                 {u"--P1D", kPlaceOfP},
                 {u"- P1D", kPlaceOfP},
                 {u"+P1D", kPlaceOfP}});
}

TEST(DurationText, NullTextLacksItsP) {
  DurationImpl duration;
  EXPECT_EQ(Thrown([&] { duration.SetText(WideString()); }), kPlaceOfP);
  EXPECT_EQ(State(duration), "0/0/0 0:0:0");
}

}  // namespace
}  // namespace qv
