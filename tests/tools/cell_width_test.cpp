#include "tools/cell_width.h"

#include <gtest/gtest.h>

#include <clocale>

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
