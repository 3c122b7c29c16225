#include "tools/unsafe_characters.h"

#include <gtest/gtest.h>

namespace qv::cli {
namespace {

constexpr char kNextLine[] = "\xC2\x85";
constexpr char kOverride[] = "\xE2\x80\xAE";

TEST(EscapeForTerminal, ControlCharactersAreTheirBytes) {
  EXPECT_EQ(EscapeForTerminal("a\x1b]0;title\x07z"), "a\\x1b]0;title\\x07z");
  EXPECT_EQ(EscapeForTerminal("\x01\x08\x0b\x0c\x1f\x7f"), "\\x01\\x08\\x0b\\x0c\\x1f\\x7f");
  EXPECT_EQ(EscapeForTerminal("a\xC2\x80\xC2\x9B\xC2\x9Fz"), "a\\xc2\\x80\\xc2\\x9b\\xc2\\x9fz");
  EXPECT_EQ(EscapeForTerminal(std::string("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(EscapeForTerminal(kNextLine), "\\xc2\\x85");
}

TEST(EscapeForTerminal, FormatCharactersAreTheirCodes) {
  EXPECT_EQ(EscapeForTerminal(std::string("a") + kOverride + "b"), "a\\u202eb");
  EXPECT_EQ(EscapeForTerminal("\xE2\x80\xA8\xE2\x80\xA9\xE2\x81\xA6\xEF\xBB\xBF\xD8\x9C"),
            "\\u2028\\u2029\\u2066\\ufeff\\u061c");
}

TEST(EscapeForTerminal, LayoutStays) {
  EXPECT_EQ(EscapeForTerminal("a\tb\nc\r\nd\n"), "a\tb\nc\r\nd\n");
  EXPECT_EQ(EscapeForTerminal("safe\rEVIL"), "safe\\x0dEVIL");
  EXPECT_EQ(EscapeForTerminal("a\r"), "a\\x0d");
}

TEST(EscapeForTerminal, OrdinaryTextStays) {
  const std::string text = "caf\xC3\xA9 \xC2\xA0 \xE2\x98\x83 \xF0\x9F\x98\x80 C:\\x41 \\u202e";
  EXPECT_EQ(EscapeForTerminal(text), text);
  EXPECT_EQ(EscapeForTerminal(""), "");
}

TEST(EscapeForTerminal, BytesThatAreNoUtf8AreEscaped) {
  EXPECT_EQ(EscapeForTerminal("a\x9B"
                              "2J\xFFz\xC3"),
            "a\\x9b2J\\xffz\\xc3");
  EXPECT_EQ(EscapeForTerminal("\xE2\x80"), "\\xe2\\x80");
}

TEST(EscapeForJson, OnlyWhatJsonLetsStand) {
  EXPECT_EQ(EscapeForJson("{\"a\":\"\\u001b\x7f\xC2\x80\xC2\x9F\xE2\x80\xA8\xE2\x80\xAE\xC2\xA0\"}"),
            "{\"a\":\"\\u001b\\u007f\\u0080\\u009f\\u2028\\u202e\xC2\xA0\"}");
  EXPECT_EQ(EscapeForJson("\"caf\xC3\xA9 \xF0\x9F\x98\x80\""), "\"caf\xC3\xA9 \xF0\x9F\x98\x80\"");
}

TEST(HoldsUnsafeCharacters, OfEveryKind) {
  for (const char* text : {"\x1b", "a\n", "\t", "a\x7f", "\xC2\x9B", "a\xE2\x80\xAE", "\xE2\x80\xA8z"})
    EXPECT_TRUE(HoldsUnsafeCharacters(text)) << text;
  EXPECT_TRUE(HoldsUnsafeCharacters(std::string("a\0", 2)));
  for (const char* text : {"", "report 7.pdf", "caf\xC3\xA9", "\xC2\xA0", "\xF0\x9F\x98\x80"})
    EXPECT_FALSE(HoldsUnsafeCharacters(text)) << text;
}

}  // namespace
}  // namespace qv::cli
