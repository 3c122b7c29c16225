#include "tools/csv_text.h"

#include <gtest/gtest.h>

namespace qv::cli {
namespace {

TEST(CsvText, PlainTextsHaveNoQuotes) {
  for (const char* text : {"Rome", "two words", "-1.5", "2024-03-05T10:15:30", "a;b", "'a'", "\xC3\xA9"})
    EXPECT_EQ(CsvField(text, ""), text);
}

TEST(CsvText, CommasQuotesAndLineEndsAreQuoted) {
  EXPECT_EQ(CsvField("a,b", ""), "\"a,b\"");
  EXPECT_EQ(CsvField("say \"hi\"", ""), "\"say \"\"hi\"\"\"");
  EXPECT_EQ(CsvField("\"", ""), "\"\"\"\"");
  EXPECT_EQ(CsvField("a\nb", ""), "\"a\nb\"");
  EXPECT_EQ(CsvField("a\rb", ""), "\"a\rb\"");
  EXPECT_EQ(CsvField("a\r\nb", ""), "\"a\r\nb\"");
}

TEST(CsvText, BlanksAtTheEndsAreQuoted) {
  EXPECT_EQ(CsvField(" a", ""), "\" a\"");
  EXPECT_EQ(CsvField("a ", ""), "\"a \"");
  EXPECT_EQ(CsvField("\ta", ""), "\"\ta\"");
  EXPECT_EQ(CsvField(" ", ""), "\" \"");
  EXPECT_EQ(CsvField("a b", ""), "a b");
}

TEST(CsvText, TextThatStandsForNoValueIsQuoted) {
  EXPECT_EQ(CsvField("", ""), "\"\"");
  EXPECT_EQ(CsvField("", "NULL"), "");
  EXPECT_EQ(CsvField("NULL", "NULL"), "\"NULL\"");
  EXPECT_EQ(CsvField("NULLS", "NULL"), "NULLS");
  EXPECT_EQ(CsvField("NULL", ""), "NULL");
}

TEST(CsvText, EmptyTextAloneInItsLineIsQuoted) {
  EXPECT_EQ(CsvOnlyField("", ""), "\"\"");
  EXPECT_EQ(CsvOnlyField("", "NULL"), "\"\"");
  EXPECT_EQ(CsvOnlyField("NULL", "NULL"), "\"NULL\"");
  EXPECT_EQ(CsvOnlyField("Rome", "NULL"), "Rome");
}

TEST(CsvText, FormulasStayAsTheyAre) {
  for (const char* text : {"=1+1", "+1", "-1", "@a", "=HYPERLINK(A1)"}) EXPECT_EQ(CsvField(text, ""), text);
}

TEST(CsvText, NullNeedsNoQuotesItself) {
  for (const char* text : {"", "NULL", "\\N", "-", "n a", "\xC3\xA9"}) EXPECT_TRUE(IsCsvNull(text)) << text;
  for (const char* text : {",", "\"", "a\nb", "\r", " a", "a ", "\t", "\xC3"})
    EXPECT_FALSE(IsCsvNull(text)) << text;
}

}  // namespace
}  // namespace qv::cli
