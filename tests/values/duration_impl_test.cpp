// A duration's properties, and the text that it writes.
#include "values/duration_impl.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "values/duration_state.h"

namespace qv {
namespace {

using Getter = std::int16_t (DurationImpl::*)();
using Setter = void (DurationImpl::*)(std::int16_t);

struct Count {
  const char* name;
  Getter get;
  Setter put;
  const char* refusal;
  const char* stateWithSeven;
  const char* textWithSeven;
};
void PrintTo(const Count& row, std::ostream* out) {
  *out << row.name;
}

class DurationCount : public testing::TestWithParam<Count> {
 protected:
  std::int16_t Get() { return (duration_.*GetParam().get)(); }
  void Put(int value) { (duration_.*GetParam().put)(static_cast<std::int16_t>(value)); }

  DurationImpl duration_;
};

TEST_P(DurationCount, StartsAtZero) {
  EXPECT_EQ(Get(), 0);
}

TEST_P(DurationCount, KeepsWhatWasPut) {
  for (const int value : {1, 90, 32767, 0}) {
    Put(value);
    EXPECT_EQ(Get(), value);
  }
}

TEST_P(DurationCount, HasAFieldOfItsOwn) {
  Put(7);
  EXPECT_EQ(State(duration_), GetParam().stateWithSeven);
}

TEST_P(DurationCount, IsWrittenWithItsDesignator) {
  Put(7);
  EXPECT_EQ(Shown(duration_.GetText()), GetParam().textWithSeven);
}

TEST_P(DurationCount, RefusesNegativesAndKeepsItsValue) {
  Put(7);
  for (const int value : {-1, -32768})
    EXPECT_EQ(Thrown([this, value] { Put(value); }), GetParam().refusal) << value;
  EXPECT_EQ(State(duration_), GetParam().stateWithSeven);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, DurationCount,
    testing::Values(Count{"Day", &DurationImpl::get_Day, &DurationImpl::put_Day,
                          "EQvException 0x00000000 Invalid duration format: day can't be negative.",
                          "0/0/7 0:0:0", "P7D"},
                    Count{"Month", &DurationImpl::get_Month, &DurationImpl::put_Month,
                          "EQvException 0x00000000 Invalid duration format: month can't be negative.",
                          "0/7/0 0:0:0", "P7M"},
                    Count{"Year", &DurationImpl::get_Year, &DurationImpl::put_Year,
                          "EQvException 0x00000000 Invalid duration format: year can't be negative.",
                          "7/0/0 0:0:0", "P7Y"},
                    Count{"Hour", &DurationImpl::get_Hour, &DurationImpl::put_Hour,
                          "EQvException 0x00000000 Invalid duration format: hour can't be negative.",
                          "0/0/0 7:0:0", "PT7H"},
                    Count{"Min", &DurationImpl::get_Min, &DurationImpl::put_Min,
                          "EQvException 0x00000000 Invalid duration format: minutes can't be negative.",
                          "0/0/0 0:7:0", "PT7M"}),
    [](const testing::TestParamInfo<Count>& row) { return std::string(row.param.name); });

constexpr char kNegativeSeconds[] =
    "EQvException 0x00000000 Invalid duration format: seconds can't be negative.";

TEST(DurationImpl, FreshOneIsAllZero) {
  DurationImpl duration;
  EXPECT_EQ(State(duration), "0/0/0 0:0:0");
  EXPECT_EQ(Shown(duration.GetText()), "P0");
}

TEST(DurationImpl, SecondsKeepTheirFraction) {
  DurationImpl duration;
  for (const double value : {0.1, 12345678.9, 90.0, std::numeric_limits<double>::infinity(), 0.0}) {
    duration.put_Sec(value);
    EXPECT_EQ(duration.get_Sec(), value);
  }
}

TEST(DurationImpl, NegativeSecondsAreRefusedAndTheOldStay) {
  DurationImpl duration;
  duration.put_Sec(1.5);
  for (const double value : {-0.5, -1.0, -1e-300, -std::numeric_limits<double>::infinity()})
    EXPECT_EQ(Thrown([&] { duration.put_Sec(value); }), kNegativeSeconds) << value;
  EXPECT_EQ(State(duration), "0/0/0 0:0:1.5");
}

TEST(DurationImpl, NegativeZeroSecondsAreZero) {
  DurationImpl duration;
  EXPECT_EQ(Thrown([&] { duration.put_Sec(-0.0); }), "nothing");
  EXPECT_EQ(Shown(duration.GetText()), "P0");
}

TEST(DurationImpl, AnySignIsKeptAndWrittenAsMinus) {
  DurationImpl duration;
  duration.put_Day(1);
  for (const int value : {-1, 1, 5, 32767, -32768}) {
    duration.put_Negative(static_cast<VARIANT_BOOL>(value));
    EXPECT_EQ(duration.get_Negative(), value);
    EXPECT_EQ(Shown(duration.GetText()), "-P1D") << value;
  }
  duration.put_Negative(0);
  EXPECT_EQ(duration.get_Negative(), 0);
  EXPECT_EQ(Shown(duration.GetText()), "P1D");
}

TEST(DurationImpl, NegativeZeroDurationHasItsMinus) {
  DurationImpl duration;
  duration.put_Negative(VARIANT_TRUE);
  EXPECT_EQ(Shown(duration.GetText()), "-P0");
}

TEST(DurationImpl, NothingIsCarriedFromFieldToField) {
  DurationImpl duration;
  duration.put_Sec(90);
  duration.put_Min(90);
  duration.put_Hour(90);
  duration.put_Day(90);
  duration.put_Month(90);
  EXPECT_EQ(Shown(duration.GetText()), "P90M90DT90H90M90S");
}

TEST(DurationImpl, TextsThatComeBackUnchanged) {
  for (const char16_t* text :
       {u"P1Y2M3DT4H5M6.5S", u"-P1D", u"PT90S", u"P0", u"-P0", u"P1Y3D", u"P2MT2M", u"PT1H1S", u"PT0.5S",
        u"-P1Y2M3DT4H5M6.5S", u"P32767Y", u"PT123456S", u"PT1.00001S"}) {
    DurationImpl duration;
    duration.SetText(text);
    EXPECT_EQ(Shown(duration.GetText()), Shown(text));
  }
}

TEST(DurationImpl, WritingChangesNothing) {
  DurationImpl duration;
  duration.SetText(u"-P1DT2.5S");
  EXPECT_EQ(Shown(duration.GetText()), "-P1DT2.5S");
  EXPECT_EQ(Shown(duration.GetText()), "-P1DT2.5S");
  EXPECT_EQ(State(duration), "0/0/1 0:0:2.5 negative -1");
}

struct Seconds {
  double value;
  const char* text;
};

TEST(DurationImpl, SecondsAreWrittenWithSixSignificantDigits) {
  const Seconds rows[] = {
      {12345678.9, "PT1.23457e+07S"},
      {1234567.0, "PT1.23457e+06S"},
      {1000000.0, "PT1e+06S"},
      {123456.789, "PT123457S"},
      {100000.0, "PT100000S"},
      {3.14159265, "PT3.14159S"},
      {0.1, "PT0.1S"},
      {0.0001, "PT0.0001S"},
      {0.00001, "PT1e-05S"},
      {1e100, "PT1e+100S"},
      {std::numeric_limits<double>::denorm_min(), "PT4.94066e-324S"},
      {std::numeric_limits<double>::infinity(), "PTinfS"},
      {std::numeric_limits<double>::quiet_NaN(), "PTnanS"},
  };
  for (const Seconds& row : rows) {
    DurationImpl duration;
    EXPECT_EQ(Thrown([&] { duration.put_Sec(row.value); }), "nothing") << row.text;
    EXPECT_EQ(Shown(duration.GetText()), row.text);
  }
}

TEST(DurationImpl, DigitsAreLostOnlyInTheText) {
  DurationImpl duration;
  duration.SetText(u"PT12345678.9S");
  EXPECT_EQ(duration.get_Sec(), 12345678.9);
  EXPECT_EQ(Shown(duration.GetText()), "PT1.23457e+07S");
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
