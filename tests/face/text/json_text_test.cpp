// Texts and numbers as JSON, and texts as messages quote them.
#include "face/text/json_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "face/text/short_quote.h"

namespace scriptwells {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(JsonText, EscapesWhatIsUnsafe) {
  EXPECT_EQ(JsonText("a\"b\\\n\xC3\xA9\xF0\x9F\x98\x80"), "\"a\\\"b\\\\\\n\xC3\xA9\xF0\x9F\x98\x80\"");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  EXPECT_EQ(JsonText(std::string("a\0\x1b\x7f\xC2\x9B\xE2\x80\xAE", 9)),
            R"("a\u0000\u001b\u007f\u009b\u202e")");
  EXPECT_EQ(JsonText("\xFF"), "\"\xEF\xBF\xBD\"");
  EXPECT_EQ(JsonText(""), "\"\"");
}

TEST(JsonNumber, OfDoubles) {
  EXPECT_EQ(JsonNumber(0.1), "0.1");
  EXPECT_EQ(JsonNumber(0.30000000000000004), "0.30000000000000004");
  EXPECT_EQ(JsonNumber(45356.0), "45356.0");
  EXPECT_EQ(JsonNumber(-0.0), "-0.0");
  EXPECT_EQ(JsonNumber(1e300), "1e+300");
  EXPECT_EQ(JsonNumber(std::nan("")), "\"NaN\"");
  EXPECT_EQ(JsonNumber(kInfinity), "\"INF\"");
  EXPECT_EQ(JsonNumber(-kInfinity), "\"-INF\"");
}

TEST(JsonNumber, OfFloatsHasTheirDigits) {
  EXPECT_EQ(JsonNumber(0.1F), "0.1");
  EXPECT_EQ(JsonNumber(3.0F), "3.0");
  EXPECT_EQ(JsonNumber(std::numeric_limits<float>::max()), "3.4028235e+38");
  EXPECT_EQ(JsonNumber(static_cast<float>(-kInfinity)), "\"-INF\"");
  EXPECT_EQ(JsonNumber(std::nanf("")), "\"NaN\"");
}

TEST(JsonNumber, BeyondDoublesIsAText) {
  EXPECT_EQ(JsonNumber(std::int64_t{9007199254740991}), "9007199254740991");
  EXPECT_EQ(JsonNumber(std::int64_t{-9007199254740991}), "-9007199254740991");
  EXPECT_EQ(JsonNumber(std::int64_t{9007199254740992}), "\"9007199254740992\"");
  EXPECT_EQ(JsonNumber(std::int64_t{-9007199254740992}), "\"-9007199254740992\"");
  EXPECT_EQ(JsonNumber(std::numeric_limits<std::int64_t>::min()), "\"-9223372036854775808\"");
}

TEST(ShortQuote, IsOneLine) {
  EXPECT_EQ(ShortQuote("abc"), "'abc'");
  EXPECT_EQ(ShortQuote(""), "''");
  EXPECT_EQ(ShortQuote("a\nb\r\nc\td "), R"('a\nb\r\nc\td ')");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  EXPECT_EQ(ShortQuote(std::string("\x1b\0\x7f\xE2\x80\xAE", 6)), R"('\x1b\x00\x7f\u202e')");
  EXPECT_EQ(ShortQuote("a\xFF\xC3"), R"('a\xff\xc3')");
}

TEST(ShortQuote, IsCutAfter40Characters) {
  const std::string forty(40, 'x');
  EXPECT_EQ(ShortQuote(forty), "'" + forty + "'");
  EXPECT_EQ(ShortQuote(forty + "y"), "'" + forty + "'...");
  std::string faces;
  for (int i = 0; i < 40; ++i) faces += "\xF0\x9F\x98\x80";
  EXPECT_EQ(ShortQuote(faces), "'" + faces + "'");
  EXPECT_EQ(ShortQuote(faces + "y"), "'" + faces + "'...");
  // So is a text that is not UTF-8.
  EXPECT_EQ(ShortQuote(std::string(1000, '\x80')).size(), 4 * 160 + 5U);
}

}  // namespace
}  // namespace scriptwells
