// Characters that a text of another source must not send to a terminal.
#include "face/text/unsafe_characters.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

struct Row {
  std::string text;
  std::string escaped;
};

TEST(UnsafeCharacters, AreEscapedForATerminal) {
  const std::string text = "caf\xC3\xA9 \xC2\xA0 \xE2\x98\x83 \xF0\x9F\x98\x80 C:\\x41 \\u202e";
  const Row rows[] = {
      {"a\x1b]0;title\x07z", "a\\x1b]0;title\\x07z"},
      {"\x01\x08\x0b\x0c\x1f\x7f", R"(\x01\x08\x0b\x0c\x1f\x7f)"},
      {"a\xC2\x80\xC2\x9B\xC2\x9Fz", R"(a\xc2\x80\xc2\x9b\xc2\x9fz)"},
      {std::string("a\0b", 3), "a\\x00b"},
      {"\xC2\x85", "\\xc2\\x85"},
      // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
      {"a\xE2\x80\xAE.b", "a\\u202e.b"},
      // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
      {"\xE2\x80\xA8\xE2\x80\xA9\xE2\x81\xA6\xEF\xBB\xBF\xD8\x9C", R"(\u2028\u2029\u2066\ufeff\u061c)"},
      {"a\x9B.2J\xFFz\xC3", R"(a\x9b.2J\xffz\xc3)"},
      {"\xE2\x80", "\\xe2\\x80"},
      {"a\tb\nc\r\nd\n", "a\tb\nc\r\nd\n"},
      {"safe\rEVIL", "safe\\x0dEVIL"},
      {"a\r", "a\\x0d"},
      {text, text},
      {"", ""},
  };
  for (const Row& row : rows) EXPECT_EQ(EscapeForTerminal(row.text), row.escaped);
}

TEST(UnsafeCharacters, AreEscapedInOneLineAndInJson) {
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  EXPECT_EQ(OneLine("a\nb\x1b[31mc\x7f.d\xC2\x9B.e\xE2\x80\xAE\tf\r\n"),
            "a b\\x1b[31mc\\x7f.d\\xc2\\x9b.e\\u202e f");
  EXPECT_EQ(OneLine("\xC3\xA9\xE2\x98\x83"), "\xC3\xA9\xE2\x98\x83");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  EXPECT_EQ(EscapeForJson("{\"a\":\"\\u001b\x7f\xC2\x80\xC2\x9F\xE2\x80\xA8\xE2\x80\xAE\xC2\xA0\"}"),
            "{\"a\":\"\\u001b\\u007f\\u0080\\u009f\\u2028\\u202e\xC2\xA0\"}");
  EXPECT_EQ(EscapeForJson("\"caf\xC3\xA9 \xF0\x9F\x98\x80\""), "\"caf\xC3\xA9 \xF0\x9F\x98\x80\"");
}

TEST(UnsafeCharacters, AreFoundInTexts) {
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  for (const char* text : {"\x1b", "a\n", "\t", "a\x7f", "\xC2\x9B", "a\xE2\x80\xAE", "\xE2\x80\xA8z"})
    EXPECT_TRUE(HoldsUnsafeCharacters(text)) << text;
  EXPECT_TRUE(HoldsUnsafeCharacters(std::string("a\0", 2)));
  for (const char* text : {"", "report 7.pdf", "caf\xC3\xA9", "\xC2\xA0", "\xF0\x9F\x98\x80"})
    EXPECT_FALSE(HoldsUnsafeCharacters(text)) << text;
}

TEST(UnsafeCharacters, FormatCharactersAloneAreEscaped) {
  EXPECT_EQ(EscapeFormatCharacters("a\xE2\x80\xAE\x1b\n"), "a\\u202e\x1b\n");
  for (const char* text : {"caf\xC3\xA9 \xE2\x80\xA6\n\xF0\x9F\x98\x80", "\xE2\x80", "\xE2", "\xE2\x80z\xEF"})
    EXPECT_EQ(EscapeFormatCharacters(text), text);
  EXPECT_EQ(FormatCharacterAt("\xD8\x9C", 0), 2U);
  EXPECT_EQ(FormatCharacterAt("a\xE2\x80\x8B", 1), 3U);
  EXPECT_EQ(FormatCharacterAt("a\xE2\x80\x8B", 0), 0U);
}

}  // namespace
}  // namespace scriptwells
