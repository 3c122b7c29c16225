// What sending changes.
#include <gtest/gtest.h>

#include <cmath>

#include "scriptwells/value.h"
#include "tests/tools/words.h"

namespace scriptwells {
namespace {

// Of a value of that type, joined with a bar.
std::string LossesOf(const Value& value) {
  std::string all;
  for (const std::string& loss : LossesOnTheWire(value)) all += (all.empty() ? "" : "|") + loss;
  return all;
}

void ExpectLosses(const char* type, const std::string& texts, const std::string& losses) {
  for (const std::string& text : qv::cli::testing::Each(texts))
    EXPECT_EQ(LossesOf(Parse(type, text)), losses) << type << " " << text;
}

TEST(Losses, OfNumbers) {
  ExpectLosses("double", "1234567|3.14159265", "travels with 6 significant digits");
  ExpectLosses("float", "1.2345678", "travels with 6 significant digits");
  ExpectLosses("duration", "PT12345.678S|P1DT0.1234567S", "travels with 6 significant digits");
  ExpectLosses("double", "0.1|123456|-1e300", "");
  ExpectLosses("float", "0.1", "");
  ExpectLosses("int", "1234567", "");
  ExpectLosses("long", "9007199254740993", "");
  ExpectLosses("duration", "PT12345.6S|PT999999S|P32767D", "");
}

TEST(Losses, OfMilliseconds) {
  ExpectLosses("time", "10:15:30.007",
               "travels with '.7' for its 7 milliseconds, which a server may read as a decimal fraction");
  ExpectLosses("datetime", "2024-03-05T10:15:30.05|1850-01-01T10:15:30.05",
               "travels with '.50' for its 50 milliseconds, which a server may read as a decimal fraction");
  ExpectLosses("time", "10:15:30.100|10:15:30.999|00:00|10:15", "");
}

// The value alone decides on the type that is sent.
TEST(Losses, OfTheType) {
  ExpectLosses("datetime", "2024-03-05T00:00|2024-03-05T00:00:00.000Z|1899-12-29T00:00", "travels as date");
  ExpectLosses("datetime", "1899-12-30T10:15|1899-12-30T00:00", "travels as time");
  ExpectLosses("date", "1899-12-30", "travels as time");
  ExpectLosses("date", "2024-03-05|1899-12-29", "");
  ExpectLosses("datetime", "2024-03-05T10:15", "");
  ExpectLosses(
      "datetime", "1899-12-30T10:15:30.007",
      "travels as time|travels with '.7' for its 7 milliseconds, which a server may read as a decimal "
      "fraction");
}

TEST(Losses, OfTexts) {
  ExpectLosses("string", "|a\t\r\n|caf\xC3\xA9", "");
  ExpectLosses("string", "a\xF0\x9F\x98\x80",
               "holds U+1F600, which does not travel as well-formed XML, so most servers refuse it");
  ExpectLosses("string", "\x1b",
               "holds U+001B, which does not travel as well-formed XML, so most servers refuse it");
}

// They are refused by ToWire.
TEST(Losses, OfWhatCannotBeSentAreNone) {
  for (const Value& value : {Value(), Value("\xFF"), Value(std::nan("")), Value(Link{"\x1b", ""}),
                             Value(Table()), Value(Date{2024, 13, 1}), Value(Time{99, 0, 0, 0})})
    EXPECT_EQ(LossesOf(value), "") << ToString(value.type());
}

}  // namespace
}  // namespace scriptwells
