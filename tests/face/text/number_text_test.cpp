// Numbers as text, with all their digits and with those that are sent.
#include "face/text/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace scriptwells {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumberText, HasTheFewestDigits) {
  EXPECT_EQ(NumberText(0.1), "0.1");
  EXPECT_EQ(NumberText(0.1F), "0.1");
  EXPECT_EQ(NumberText(static_cast<double>(0.1F)), "0.10000000149011612");
  EXPECT_EQ(NumberText(3.0), "3");
  EXPECT_EQ(NumberText(1e21), "1e+21");
  EXPECT_EQ(NumberText(kInfinity), "INF");
  EXPECT_EQ(NumberText(-static_cast<float>(kInfinity)), "-INF");
  EXPECT_EQ(NumberText(std::nan("")), "NaN");
}

TEST(SixDigits, AreThoseOfTheWire) {
  EXPECT_EQ(SixDigits(1234567), "1.23457e+06");
  EXPECT_EQ(SixDigits(12345.678), "12345.7");
  EXPECT_EQ(SixDigits(0.5), "0.5");
  EXPECT_EQ(SixDigits(0.00001), "1e-05");
}

TEST(LosesDigits, SaysWhetherTheyReadBack) {
  for (const double value : {0.0, 0.1, -1.5, 123456.0, 1e300}) EXPECT_FALSE(LosesDigits(value)) << value;
  for (const double value : {1234567.0, 3.14159265, 1.0000001}) EXPECT_TRUE(LosesDigits(value)) << value;
  EXPECT_FALSE(LosesDigits(0.1F));
  EXPECT_TRUE(LosesDigits(1.2345678F));
  // They are refused, and lose nothing.
  for (const double value : {kInfinity, -kInfinity, std::nan("")}) EXPECT_FALSE(LosesDigits(value)) << value;
}

}  // namespace
}  // namespace scriptwells
