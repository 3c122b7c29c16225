#include "tools/cell_width.h"

#include <gtest/gtest.h>

#include <clocale>

#include "tools/unsafe_characters.h"

namespace qv::cli {
namespace {

// In the locale that the program chooses when there is none.
class CellWidth : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }
  void TearDown() override { std::setlocale(LC_CTYPE, "C"); }
};

TEST_F(CellWidth, CharactersTakeTheirColumns) {
  EXPECT_EQ(ShownWidth(""), 0u);
  EXPECT_EQ(ShownWidth("Rome"), 4u);
  EXPECT_EQ(ShownWidth("caf\xC3\xA9"), 4u);
  EXPECT_EQ(ShownWidth("\xE6\x9D\xB1\xE4\xBA\xAC"), 4u);  // two wide characters
  EXPECT_EQ(ShownWidth("e\xCC\x81"), 1u);                 // a combining one
}

TEST_F(CellWidth, EscapesTakeFourForEachByte) {
  EXPECT_EQ(ShownWidth("a\nb"), 6u);
  EXPECT_EQ(ShownWidth("\x7F"), 4u);
  EXPECT_EQ(ShownWidth("\xC2\x9B"), 8u);  // a control character of two bytes
  EXPECT_EQ(ShownWidth("\xFF"), 4u);      // no character at all
  EXPECT_EQ(ShownWidth("\xC3"), 4u);      // one that breaks off
  EXPECT_EQ(ShownWidth("\\x"), 5u);
  EXPECT_EQ(ShownWidth("\\y"), 2u);
}

TEST_F(CellWidth, FormatCharactersTakeTheirEscape) {
  for (const char* text :
       {"\xE2\x80\x8B", "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xAA", "\xE2\x80\xAB", "\xE2\x80\xAC",
        "\xE2\x80\xAD", "\xE2\x80\xAE", "\xE2\x81\xA6", "\xE2\x81\xA7", "\xE2\x81\xA8", "\xE2\x81\xA9",
        "\xEF\xBB\xBF", "\xD8\x9C", "\xE2\x80\xA8", "\xE2\x80\xA9"})
    EXPECT_EQ(ShownWidth(text), 6u) << text;
  EXPECT_EQ(ShownWidth("\xE2\x80\xA6"), 1u);
  EXPECT_EQ(ShownWidth("\xE2\x80\x8C"), 0u);  // a joiner, which scripts need
  EXPECT_EQ(CutToWidth("ab\xE2\x80\xAE"
                       "cd",
                       9),
            "ab\xE2\x80\xAE\xE2\x80\xA6");
  EXPECT_EQ(CutToWidth("ab\xE2\x80\xAE"
                       "cd",
                       8),
            "ab\xE2\x80\xA6");
}

TEST_F(CellWidth, EscapesOfFormatCharacters) {
  EXPECT_EQ(EscapeFormatCharacters("a\xE2\x80\xAE"
                                   "b\xD8\x9C"),
            "a\\u202eb\\u061c");
  EXPECT_EQ(EscapeFormatCharacters("caf\xC3\xA9 \xE2\x80\xA6\n\xF0\x9F\x98\x80"),
            "caf\xC3\xA9 \xE2\x80\xA6\n\xF0\x9F\x98\x80");
  EXPECT_EQ(EscapeFormatCharacters("\xE2\x80"), "\xE2\x80");
  EXPECT_EQ(EscapeFormatCharacters("\xE2"), "\xE2");
  EXPECT_EQ(EscapeFormatCharacters("\xE2\x80z\xEF"), "\xE2\x80z\xEF");
}

TEST_F(CellWidth, TextThatFitsStays) {
  EXPECT_EQ(CutToWidth("Rome", 4), "Rome");
  EXPECT_EQ(CutToWidth("", 1), "");
  EXPECT_EQ(CutToWidth("\xE6\x9D\xB1\xE4\xBA\xAC", 4), "\xE6\x9D\xB1\xE4\xBA\xAC");
}

TEST_F(CellWidth, LongerTextIsCutWithASign) {
  EXPECT_EQ(CutToWidth("Rome", 3), "Ro\xE2\x80\xA6");
  EXPECT_EQ(CutToWidth("Rome", 1), "\xE2\x80\xA6");
  EXPECT_EQ(CutToWidth("caf\xC3\xA9s", 4), "caf\xE2\x80\xA6");
  EXPECT_EQ(CutToWidth("\xE6\x9D\xB1\xE4\xBA\xAC", 3), "\xE6\x9D\xB1\xE2\x80\xA6");
  EXPECT_EQ(CutToWidth("\xE6\x9D\xB1\xE4\xBA\xAC", 2), "\xE2\x80\xA6");
  EXPECT_EQ(CutToWidth("ab\ncd", 6), "ab\xE2\x80\xA6");
  EXPECT_EQ(CutToWidth("ab\ncd", 7), "ab\n\xE2\x80\xA6");
}

TEST_F(CellWidth, SignIsAsciiWithoutUtf8) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C"), nullptr);
  EXPECT_EQ(CutToWidth("Rome", 3), "Ro~");
}

}  // namespace
}  // namespace qv::cli
