// A duration's properties, and the text that it writes.
#include "values/duration_impl.h"

#include <gtest/gtest.h>

#include <limits>

#include "values/duration_state.h"

namespace qv {
namespace {

using Shorts = std::initializer_list<std::int16_t>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string TextOf(DurationImpl& duration) {
  return Shown(duration.GetText());
}

TEST(DurationImpl, EachCountHasAFieldAndADesignatorOfItsOwn) {
  const struct {
    const char* name;
    std::int16_t (DurationImpl::*get)();
    void (DurationImpl::*put)(std::int16_t);
    const char* stateWithSeven;
    const char* textWithSeven;
  } rows[] = {{"day", &DurationImpl::get_Day, &DurationImpl::put_Day, "0/0/7 0:0:0", "P7D"},
              {"month", &DurationImpl::get_Month, &DurationImpl::put_Month, "0/7/0 0:0:0", "P7M"},
              {"year", &DurationImpl::get_Year, &DurationImpl::put_Year, "7/0/0 0:0:0", "P7Y"},
              {"hour", &DurationImpl::get_Hour, &DurationImpl::put_Hour, "0/0/0 7:0:0", "PT7H"},
              {"minutes", &DurationImpl::get_Min, &DurationImpl::put_Min, "0/0/0 0:7:0", "PT7M"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    DurationImpl duration;
    EXPECT_EQ((duration.*row.get)(), 0);
    for (const std::int16_t value : Shorts{1, 90, 32767, 0, 7}) {
      (duration.*row.put)(value);
      EXPECT_EQ((duration.*row.get)(), value);
    }
    EXPECT_EQ(State(duration), row.stateWithSeven);
    EXPECT_EQ(TextOf(duration), row.textWithSeven);
    for (const std::int16_t value : Shorts{-1, -32768})
      EXPECT_EQ(
          Thrown([&] { (duration.*row.put)(value); }),
          std::string("EQvException 0x00000000 Invalid duration format: ") + row.name + " can't be negative.")
          << value;
    EXPECT_EQ(State(duration), row.stateWithSeven);
  }
}

TEST(DurationImpl, FreshOneIsAllZero) {
  DurationImpl duration;
  EXPECT_EQ(State(duration), "0/0/0 0:0:0");
  EXPECT_EQ(TextOf(duration), "P0");
}

TEST(DurationImpl, SecondsKeepTheirFractionAndRefuseNegatives) {
  DurationImpl duration;
  for (const double value : {0.1, 12345678.9, 90.0, kInfinity, 0.0, 1.5}) {
    duration.put_Sec(value);
    EXPECT_EQ(duration.get_Sec(), value);
  }
  for (const double value : {-0.5, -1.0, -1e-300, -kInfinity})
    EXPECT_EQ(Thrown([&] { duration.put_Sec(value); }),
              "EQvException 0x00000000 Invalid duration format: seconds can't be negative.")
        << value;
  EXPECT_EQ(State(duration), "0/0/0 0:0:1.5");
  EXPECT_EQ(Thrown([&] { duration.put_Sec(-0.0); }), "nothing");
  EXPECT_EQ(TextOf(duration), "P0");
}

TEST(DurationImpl, AnySignIsKeptAndWrittenAsMinus) {
  DurationImpl duration;
  duration.put_Negative(VARIANT_TRUE);
  EXPECT_EQ(TextOf(duration), "-P0");
  duration.put_Day(1);
  for (const std::int16_t value : Shorts{-1, 1, 5, 32767, -32768, 0}) {
    duration.put_Negative(value);
    EXPECT_EQ(duration.get_Negative(), value);
    EXPECT_EQ(TextOf(duration), value == 0 ? "P1D" : "-P1D") << value;
  }
}

TEST(DurationImpl, NothingIsCarriedFromFieldToField) {
  DurationImpl duration;
  duration.put_Sec(90);
  duration.put_Min(90);
  duration.put_Hour(90);
  duration.put_Day(90);
  duration.put_Month(90);
  EXPECT_EQ(TextOf(duration), "P90M90DT90H90M90S");
}

TEST(DurationImpl, TextsThatComeBackUnchanged) {
  for (const char16_t* text :
       {u"P1Y2M3DT4H5M6.5S", u"-P1D", u"PT90S", u"P0", u"-P0", u"P1Y3D", u"P2MT2M", u"PT1H1S", u"PT0.5S",
        u"-P1Y2M3DT4H5M6.5S", u"P32767Y", u"PT123456S", u"PT1.00001S"}) {
    DurationImpl duration;
    duration.SetText(text);
    EXPECT_EQ(TextOf(duration), Shown(text));
  }
}

TEST(DurationImpl, WritingChangesNothing) {
  DurationImpl duration;
  duration.SetText(u"-P1DT2.5S");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(TextOf(duration), "-P1DT2.5S");
  EXPECT_EQ(State(duration), "0/0/1 0:0:2.5 negative -1");
}

TEST(DurationImpl, SecondsAreWrittenWithSixSignificantDigits) {
  const std::pair<double, const char*> rows[] = {{12345678.9, "1.23457e+07"},
                                                 {1234567.0, "1.23457e+06"},
                                                 {1000000.0, "1e+06"},
                                                 {123456.789, "123457"},
                                                 {100000.0, "100000"},
                                                 {3.14159265, "3.14159"},
                                                 {0.1, "0.1"},
                                                 {0.0001, "0.0001"},
                                                 {0.00001, "1e-05"},
                                                 {1e100, "1e+100"},
                                                 {4.9406564584124654e-324, "4.94066e-324"},
                                                 {kInfinity, "inf"},
                                                 {std::numeric_limits<double>::quiet_NaN(), "nan"}};
  for (const auto& [value, digits] : rows) {
    DurationImpl duration;
    EXPECT_EQ(Thrown([&, seconds = value] { duration.put_Sec(seconds); }), "nothing") << digits;
    EXPECT_EQ(TextOf(duration), std::string("PT") + digits + "S");
  }
  DurationImpl read;
  read.SetText(u"PT12345678.9S");
  EXPECT_EQ(read.get_Sec(), 12345678.9);
  EXPECT_EQ(TextOf(read), "PT1.23457e+07S");
}

TEST(DurationImpl, CopiesHaveTheirOwnFields) {
  DurationImpl first;
  first.SetText(u"P1D");
  DurationImpl second = first;
  second.put_Day(2);
  EXPECT_EQ(State(first), "0/0/1 0:0:0");
  EXPECT_EQ(State(second), "0/0/2 0:0:0");
}

}  // namespace
}  // namespace qv
