#include "devservice/values/duration_text.h"

#include <gtest/gtest.h>

namespace qv::devservice {
namespace {

// The text that the service makes of a text, "(refused)" for none.
std::string Rewritten(std::string_view text) {
  Duration duration;
  return ParseDuration(text, duration) ? FormatDuration(duration) : "(refused)";
}

TEST(DurationText, EachPartGoesToItsField) {
  Duration duration;
  ASSERT_TRUE(ParseDuration("-P1Y2M3DT4H5M6.5S", duration));
  EXPECT_TRUE(duration.negative);
  EXPECT_EQ(duration.years, 1);
  EXPECT_EQ(duration.months, 2);
  EXPECT_EQ(duration.days, 3);
  EXPECT_EQ(duration.hours, 4);
  EXPECT_EQ(duration.minutes, 5);
  EXPECT_EQ(duration.seconds, 6.5);
  ASSERT_TRUE(ParseDuration("PT7M", duration));
  EXPECT_FALSE(duration.negative);
  EXPECT_EQ(duration.months, 0);
  EXPECT_EQ(duration.minutes, 7);
}

TEST(DurationText, FormsOfTheStandardAndOfClientsAreRead) {
  constexpr const char* kRows[][2] = {
      {"P1Y2M3DT4H5M6.5S", "P1Y2M3DT4H5M6.5S"},
      {"-P1D", "-P1D"},
      {"P0", "P0"},
      {"-P0", "-P0"},
      {"P0D", "P0"},
      {"PT0S", "P0"},
      {"PT90S", "PT90S"},
      {"P5M", "P5M"},
      {"PT5M", "PT5M"},
      {"P1DT2H", "P1DT2H"},
      {"P1Y3D", "P1Y3D"},
      {"P01Y", "P1Y"},
      {"P1DT0H", "P1D"},
      {"PT0.001S", "PT0.001S"},
      {"PT1.50S", "PT1.5S"},
      {"PT1.23457e+07S", "PT12345700S"},
      {"PT1.23457e+007S", "PT12345700S"},
      {"PT1.5E1S", "PT15S"},
      {"PT1e-05S", "PT0.00001S"},
      {"P2147483647Y", "P2147483647Y"},
      {" P1D\n", "P1D"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Rewritten(row[0]), row[1]) << row[0];
}

TEST(DurationText, WhatIsNoDurationIsRefused) {
  for (const char* text : {"",         "P",        "-P",        "PT",           "P1DT",
                           "1D",       "p1d",      "P1d",       "PT1h",         "+P1D",
                           "P-1D",     "--P1D",    "-1D",       "P1D2Y",        "P3D1Y",
                           "P1Y1Y",    "P1.9Y",    "PT1.5M",    "P5H",          "PT5Y",
                           "PT5D",     "P1W",      "P1",        "PT1",          "P00",
                           "P0T0S",    "PT1SP",    "P1D T1H",   "P 1D",         "PT1,5S",
                           "PT.5S",    "PT1.S",    "PTS",       "PT-1S",        "PT1e5",
                           "PT1eS",    "PT1e+S",   "PTinfS",    "PTnanS",       "PT0x1S",
                           "P1DP1D",   "PT1S1M",   "P1DT1HT1M", "P2147483648Y", "PT99999999999H",
                           "PT1e999S", "PT1.5.5S", "PYMD"}) {
    EXPECT_EQ(Rewritten(text), "(refused)") << text;
  }
}

TEST(DurationText, HugeSecondsHaveNoExponent) {
  EXPECT_EQ(Rewritten("PT1e300S").size(), 304u);
  EXPECT_EQ(Rewritten("PT5e-324S").size(), 329u);
}

}  // namespace
}  // namespace qv::devservice
