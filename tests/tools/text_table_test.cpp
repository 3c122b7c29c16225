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

TEST(TextTable, CharactersBeyondAsciiStayInAUtf8Locale) {
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  EXPECT_EQ(FormatTable({{"a", "string", "\xC3\xA9\xE2\x98\x83"}}),
            "NAME TYPE   VALUE\na    string \xC3\xA9\xE2\x98\x83\n");
  std::setlocale(LC_CTYPE, "C");
}

}  // namespace
}  // namespace qv::cli
