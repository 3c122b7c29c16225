// The usual forms of numbers, which have a short way: the same results in every bit as the general way.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string>

#include "support/near_plain_texts.h"
#include "support/numbers.h"
#include "support/print_wide_string.h"
#include "support/string_helpers.h"

namespace qv {
namespace {

std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// What the C library reads. Units beyond ASCII end a number, as this one does.
double Expected(std::u16string_view text) {
  std::string narrow;
  for (const char16_t unit : text) narrow += unit > 0x7F ? '!' : static_cast<char>(unit);
  return std::strtod(narrow.c_str(), nullptr);
}

void ExpectSameDouble(std::u16string_view text) {
  if (BitsOf(ParseDouble(text)) != BitsOf(Expected(text)))
    ADD_FAILURE() << Shown(WideString(text)) << " is " << ParseDouble(text) << ", not " << Expected(text);
}

TEST(PlainInt, HasUpToNineDigitsAndAMinusSign) {
  const struct {
    std::u16string_view text;
    std::int32_t value;
  } rows[] = {{u"0", 0},
              {u"-0", 0},
              {u"7", 7},
              {u"007", 7},
              {u"-7", -7},
              {u"42", 42},
              {u"999999999", 999999999},
              {u"-999999999", -999999999}};
  for (const auto& row : rows) EXPECT_EQ(PlainInt(row.text), row.value) << Shown(WideString(row.text));
}

TEST(PlainInt, IsNothingElse) {
  for (const std::u16string_view text : {u"", u"-", u"+7", u" 7", u"7 ", u"--7", u"1234567890",
                                         u"-1234567890", u"1e3", u"7.0", u"\u0661", u"7\u0130"})
    EXPECT_EQ(PlainInt(text), std::nullopt) << Shown(WideString(text));
}

TEST(PlainNumbers, WholeNumbersByChanceAreReadAsInTheGeneralWay) {
  static constexpr std::u16string_view kShapes[] = {
      u"#", u"-#", u"##", u"####", u"#########", u"-#########", u"##########", u"-############"};
  NearPlainTexts texts(20240305);
  for (long left = RandomTexts(1'000'000); left > 0; --left) {
    const std::u16string_view text = texts.Next(kShapes[texts.Below(std::size(kShapes))]);
    if (NarrowedInt(text) != ParseInt(text)) ADD_FAILURE() << Shown(WideString(text));
  }
}

TEST(PlainNumbers, BrokenNumbersByChanceAreReadInEveryBit) {
  static constexpr std::u16string_view kShapes[] = {u"#",
                                                    u"-#",
                                                    u"#.#",
                                                    u"-##.##",
                                                    u"####.##",
                                                    u"#######",
                                                    u"0.########",
                                                    u"-0.0",
                                                    u"###############",
                                                    u"################",
                                                    u"#.##############",
                                                    u"#.###############",
                                                    u"########.#######",
                                                    u"-0.##############",
                                                    u"########.########",
                                                    u"0.000000000000##",
                                                    u"##############.#",
                                                    u"99999999999999.9"};
  NearPlainTexts texts(20240306);
  for (long left = RandomTexts(1'000'000); left > 0; --left)
    ExpectSameDouble(texts.Next(kShapes[texts.Below(std::size(kShapes))]));
}

TEST(PlainNumbers, EdgesOfTheShapeAreReadInEveryBit) {
  for (const std::u16string_view text : {u"",
                                         u"-",
                                         u".",
                                         u"-.",
                                         u"5.",
                                         u".5",
                                         u"-.5",
                                         u"-5.",
                                         u"0",
                                         u"-0",
                                         u"-0.0",
                                         u"00",
                                         u"1.2.3",
                                         u"1..2",
                                         u"--1",
                                         u"1-",
                                         u"999999999999999",
                                         u"-999999999999999",
                                         u"9999999999999999",
                                         u"0.999999999999999",
                                         u"9.99999999999999",
                                         u"99999999999999.9",
                                         u"0.000000000000001",
                                         u"9007199254740993",
                                         u"0.1",
                                         u"0.3",
                                         u"123456789.123456",
                                         u"1 ",
                                         u" 1",
                                         u"1e5",
                                         u"1.5e5",
                                         u"0x10",
                                         u"1.\u0661"})
    ExpectSameDouble(text);
}

void ExpectSameText(double value) {
  char expected[40];
  (void)std::snprintf(expected, sizeof expected, "%g", value);
  char16_t place[kLongestNumber];
  const std::string text = Shown(WideString(GeneralText(value, place)));
  if (text != expected) ADD_FAILURE() << text << " is not " << expected;
}

// Also the neighbours of the middle between two texts, and of each power of ten.
TEST(PlainNumbers, TextsByChanceAreThoseOfTheCLibrary) {
  std::mt19937_64 random(20240305);  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  for (long left = RandomTexts(300'000); left > 0; --left) {
    const double digits = static_cast<double>(random() % 20'000'000);
    const double power = std::pow(10, static_cast<double>(random() % 12));
    const double middle = digits / power;
    for (const double value : {middle, std::nextafter(middle, 0), std::nextafter(middle, 1e9), -middle})
      ExpectSameText(value);
    ExpectSameText(static_cast<double>(random()) / std::pow(2, static_cast<double>(random() % 80)));
  }
  for (int exponent = -7; exponent < 9; ++exponent) {
    const double power = std::pow(10, exponent);
    for (const double value :
         {power, std::nextafter(power, 0), std::nextafter(power, 1e10), power - power * 5e-7})
      ExpectSameText(value);
  }
}

TEST(PlainNumbers, TextsGoIntoAPlaceOfTheCaller) {
  char16_t place[kLongestNumber];
  EXPECT_EQ(DecimalText(INT64_MIN, place), u"-9223372036854775808");
  EXPECT_EQ(DecimalText(INT64_MIN, place).data(), place);
  EXPECT_EQ(GeneralText(-1.23456789e-300, place), u"-1.23457e-300");
}

}  // namespace
}  // namespace qv
