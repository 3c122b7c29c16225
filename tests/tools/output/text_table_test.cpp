// Tables with aligned columns: the widths of texts, escapes, and texts that are cut.
#include "tools/output/text_table.h"

#include <gtest/gtest.h>

#include <clocale>

#include "tools/output/cell_width.h"

namespace qv::cli {
namespace {

using Row = std::vector<std::string>;

// The locale that the program chooses if the environment has none.
class Utf8Locale {
 public:
  Utf8Locale() { EXPECT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }
  ~Utf8Locale() { static_cast<void>(std::setlocale(LC_CTYPE, "C")); }
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;
};

std::string Table(const std::vector<TextColumn>& columns, const std::vector<Row>& rows,
                  std::size_t width = 0) {
  TextTable table(columns);
  for (const Row& row : rows) table.AddRow(row);
  return table.Format(width);
}

TEST(TextTable, ColumnsAreAsWideAsTheirWidestText) {
  EXPECT_EQ(FormatTable({{"a", "int", "1"}, {"longer", "boolean", "true"}}),
            "NAME   TYPE    VALUE\na      int     1\nlonger boolean true\n");
  EXPECT_EQ(FormatColumns({"A", "LONG"}, {{"one", "1"}, {"2", ""}}), "A   LONG\none 1\n2   \n");
  const std::string value(500, 'x');
  EXPECT_EQ(FormatTable({{"a", "string", value}}), "NAME TYPE   VALUE\na    string " + value + "\n");
  EXPECT_EQ(FormatColumns({"A", "LONG"}, {}), "A LONG\n");
  EXPECT_EQ(FormatColumns({}, {}), "");
  EXPECT_EQ(FormatColumns({}, {{}, {}}), "");
  EXPECT_EQ(
      Table({{"city"}, {"people", true}, {"n", true}}, {{"Rome", "2748109", "1"}, {"Bern", "134591", ""}}),
      "city  people n\nRome 2748109 1\nBern  134591 \n");
}

TEST(TextTable, ControlCharactersAreEscaped) {
  const std::string table = FormatTable({{"a", "string", "x\x1b[31my\nz"}});
  EXPECT_EQ(table.find('\x1b'), std::string::npos);
  EXPECT_EQ(table, "NAME TYPE   VALUE\na    string x\\x1b[31my\\x0az\n");
  EXPECT_EQ(FormatColumns({"a\x1b[2J"}, {{"1"}}), "a\\x1b[2J\n1\n");
}

// NOLINTBEGIN(misc-misleading-bidirectional): characters that mislead are what is tested.

TEST(TextTable, OnlyFormatCharactersAreEscapedInAUtf8Locale) {
  const Utf8Locale locale;
  EXPECT_EQ(FormatColumns({"A", "B"}, {{"x\xE2\x80\xAEtxt", "1"}, {"\xEF\xBB\xBF", "2"}, {"\\u202e", "3"}}),
            "A          B\nx\\u202etxt 1\n\\ufeff     2\n\\u202e     3\n");
  EXPECT_EQ(Table({{"A"}, {"n", true}}, {{"ab\xE2\x80\x8Bxyz", "1"}}, 8), "A   n\nab\xE2\x80\xA6 1\n");
  EXPECT_EQ(FormatTable({{"a", "string", "\xC3\xA9\xE2\x98\x83"}}),
            "NAME TYPE   VALUE\na    string \xC3\xA9\xE2\x98\x83\n");
}

TEST(TextTable, LongTextsAreCut) {
  EXPECT_EQ(Table({{"first"}, {"second", true}}, {{"abcdefgh", "1234567"}}, 16),
            "first     second\nabcdefgh 1234567\n");
  EXPECT_EQ(Table({{"first"}, {"second"}, {"third", true}},
                  {{"abcdefghijklmnopqrst", "0123456789", "2748109"}}, 33),
            "first          second       third\n"
            "abcdefghijklm~ 0123456789 2748109\n");
  EXPECT_EQ(Table({{"first"}, {"a head that is long"}, {"third", true}},
                  {{"abcdefghijklmnopqrst", "0123456789", "2748109"}, {"short", "", ""}}, 25),
            "first    a head ~   third\n"
            "abcdefg~ 0123456~ 2748109\n"
            "short             \n");
  EXPECT_EQ(Table({{"a number", true}, {"text"}}, {{"123456789012345", "abcdefgh"}}, 10),
            "       a number text\n123456789012345 abc~\n");
}

class CellWidth : public ::testing::Test {
 protected:
  Utf8Locale locale_;
};

TEST_F(CellWidth, IsThatOfTheCharactersOrTheirEscapes) {
  const std::pair<const char*, std::size_t> rows[] = {
      {"", 0},
      {"Rome", 4},
      {"caf\xC3\xA9", 4},
      {"\xE6\x9D\xB1\xE4\xBA\xAC", 4},  // two wide characters
      {"e\xCC\x81", 1},                 // a combining one
      {"a\nb", 6},
      {"\x7F", 4},
      {"\xC2\x9B", 8},  // a control character of two bytes
      {"\xFF", 4},      // an invalid byte
      {"\xC3", 4},      // a character that breaks off
      {"\\x", 5},
      {"\\y", 2},
      {"\xE2\x80\xA6", 1},
      {"\xE2\x80\x8C", 0},  // a joiner, which scripts need
  };
  for (const auto& [text, width] : rows) EXPECT_EQ(ShownWidth(text), width) << text;
  for (const char* text :
       {"\xE2\x80\x8B", "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xAA", "\xE2\x80\xAB", "\xE2\x80\xAC",
        "\xE2\x80\xAD", "\xE2\x80\xAE", "\xE2\x81\xA6", "\xE2\x81\xA7", "\xE2\x81\xA8", "\xE2\x81\xA9",
        "\xEF\xBB\xBF", "\xD8\x9C", "\xE2\x80\xA8", "\xE2\x80\xA9"})
    EXPECT_EQ(ShownWidth(text), 6U) << text;
}

struct CutRow {
  const char* text;
  std::size_t width;
  const char* cut;
};

TEST_F(CellWidth, LongTextEndsWithAnEllipsis) {
  const CutRow rows[] = {
      {"Rome", 4, "Rome"},
      {"", 1, ""},
      {"\xE6\x9D\xB1\xE4\xBA\xAC", 4, "\xE6\x9D\xB1\xE4\xBA\xAC"},
      {"Rome", 3, "Ro\xE2\x80\xA6"},
      {"Rome", 1, "\xE2\x80\xA6"},
      {"caf\xC3\xA9s", 4, "caf\xE2\x80\xA6"},
      {"\xE6\x9D\xB1\xE4\xBA\xAC", 3, "\xE6\x9D\xB1\xE2\x80\xA6"},
      {"\xE6\x9D\xB1\xE4\xBA\xAC", 2, "\xE2\x80\xA6"},
      {"ab\ncd", 6, "ab\xE2\x80\xA6"},
      {"ab\ncd", 7, "ab\n\xE2\x80\xA6"},
      {"ab\xE2\x80\xAE.d", 9, "ab\xE2\x80\xAE\xE2\x80\xA6"},
      {"ab\xE2\x80\xAE.d", 8, "ab\xE2\x80\xA6"},
  };
  for (const CutRow& row : rows) EXPECT_EQ(CutToWidth(row.text, row.width), row.cut);
}

TEST(CellWidthInC, EllipsisIsAscii) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C"), nullptr);
  EXPECT_EQ(CutToWidth("Rome", 3), "Ro~");
}

// NOLINTEND(misc-misleading-bidirectional)

}  // namespace
}  // namespace qv::cli
