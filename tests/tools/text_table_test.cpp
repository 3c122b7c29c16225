#include "tools/text_table.h"

#include <gtest/gtest.h>

#include <clocale>

namespace qv::cli {
namespace {

TEST(TextTable, ColumnsAreAsWideAsTheirWidestText) {
  EXPECT_EQ(FormatTable({{"a", "int", "1"}, {"longer", "boolean", "true"}}),
            "NAME   TYPE    VALUE\na      int     1\nlonger boolean true\n");
}

TEST(TextTable, ColumnsMayBeOthers) {
  EXPECT_EQ(FormatColumns({"A", "LONG"}, {{"one", "1"}, {"2", ""}}), "A   LONG\none 1\n2   \n");
}

TEST(TextTable, LongValueIsNotCut) {
  const std::string value(500, 'x');
  EXPECT_EQ(FormatTable({{"a", "string", value}}), "NAME TYPE   VALUE\na    string " + value + "\n");
}

TEST(TextTable, ControlCharactersAreEscaped) {
  const std::string table = FormatTable({{"a", "string", "x\x1b[31my\nz"}});
  EXPECT_EQ(table.find('\x1b'), std::string::npos);
  EXPECT_EQ(table, "NAME TYPE   VALUE\na    string x\\x1b[31my\\x0az\n");
}

TEST(TextTable, FormatCharactersAreEscaped) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  EXPECT_EQ(FormatColumns({"A", "B"}, {{"x\xE2\x80\xAEtxt", "1"}, {"\xEF\xBB\xBF", "2"}, {"\\u202e", "3"}}),
            "A          B\nx\\u202etxt 1\n\\ufeff     2\n\\u202e     3\n");
  TextTable cut({{"A"}, {"n", true}});
  cut.AddRow({"ab\xE2\x80\x8Bxyz", "1"});
  EXPECT_EQ(cut.Format(8), "A   n\nab\xE2\x80\xA6 1\n");
  std::setlocale(LC_CTYPE, "C");
}

TEST(TextTable, CharactersBeyondAsciiStayInAUtf8Locale) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  EXPECT_EQ(FormatTable({{"a", "string", "\xC3\xA9\xE2\x98\x83"}}),
            "NAME TYPE   VALUE\na    string \xC3\xA9\xE2\x98\x83\n");
  std::setlocale(LC_CTYPE, "C");
}

TEST(TextTable, NumbersStandToTheRight) {
  TextTable table({{"city"}, {"people", true}, {"n", true}});
  table.AddRow({"Rome", "2748109", "1"});
  table.AddRow({"Bern", "134591", ""});
  EXPECT_EQ(table.Format(0), "city  people n\nRome 2748109 1\nBern  134591 \n");
}

TEST(TextTable, HeadsStandAloneWithoutRows) {
  EXPECT_EQ(FormatColumns({"A", "LONG"}, {}), "A LONG\n");
  EXPECT_EQ(FormatColumns({}, {}), "");
  EXPECT_EQ(FormatColumns({}, {{}, {}}), "");
}

TEST(TextTable, HeadsAreEscapedToo) {
  EXPECT_EQ(FormatColumns({"a\x1b[2J"}, {{"1"}}), "a\\x1b[2J\n1\n");
}

TEST(TextTable, LinesThatFitAreNotCut) {
  TextTable table({{"first"}, {"second", true}});
  table.AddRow({"abcdefgh", "1234567"});
  EXPECT_EQ(table.Format(16), "first     second\nabcdefgh 1234567\n");
}

TEST(TextTable, LongestTextsAreCutFirst) {
  TextTable table({{"first"}, {"second"}, {"third", true}});
  table.AddRow({"abcdefghijklmnopqrst", "0123456789", "2748109"});
  EXPECT_EQ(table.Format(33),
            "first          second       third\n"
            "abcdefghijklm~ 0123456789 2748109\n");
}

TEST(TextTable, CutTextsShareTheRoom) {
  TextTable table({{"first"}, {"a head that is long"}, {"third", true}});
  table.AddRow({"abcdefghijklmnopqrst", "0123456789", "2748109"});
  table.AddRow({"short", "", ""});
  EXPECT_EQ(table.Format(25),
            "first    a head ~   third\n"
            "abcdefg~ 0123456~ 2748109\n"
            "short             \n");
}

TEST(TextTable, NumbersAreNeverCut) {
  TextTable table({{"a number", true}, {"text"}});
  table.AddRow({"123456789012345", "abcdefgh"});
  EXPECT_EQ(table.Format(10), "       a number text\n123456789012345 abc~\n");
}

}  // namespace
}  // namespace qv::cli
