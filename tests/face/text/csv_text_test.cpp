// Which texts are quoted as fields of CSV.
#include "face/text/csv_text.h"

#include <gtest/gtest.h>

#include "scriptwells/error.h"

namespace scriptwells {
namespace {

struct Row {
  const char* text;
  const char* nullText;
  const char* field;
};

TEST(CsvText, PlainTextsAndFormulasAreNotQuoted) {
  for (const char* text : {"Rome", "two words", "-1.5", "2024-03-05T10:15:30", "a;b", "'a'", "\xC3\xA9",
                           "=1+1", "+1", "-1", "@a", "=HYPERLINK(A1)"})
    EXPECT_EQ(CsvField(text, ""), text);
  for (const char* text : {"", "NULL", "\\N", "-", "n a", "\xC3\xA9"})
    EXPECT_NO_THROW(CheckCsvNull(text)) << text;
  for (const char* text : {",", "\"", "a\nb", "\r", " a", "a ", "\t", "\xC3"})
    EXPECT_THROW(CheckCsvNull(text), ConversionError) << text;
}

TEST(CsvText, SeparatorsBlanksAtTheEndsAndTheNullTextAreQuoted) {
  const Row rows[] = {
      {"a,b", "", "\"a,b\""},     {"say \"hi\"", "", R"("say ""hi""")"},
      {"\"", "", R"("""")"},      {"a\nb", "", "\"a\nb\""},
      {"a\rb", "", "\"a\rb\""},   {"a\r\nb", "", "\"a\r\nb\""},
      {" a", "", "\" a\""},       {"a ", "", "\"a \""},
      {"\ta", "", "\"\ta\""},     {" ", "", "\" \""},
      {"a b", "", "a b"},         {"", "", "\"\""},
      {"", "NULL", ""},           {"NULL", "NULL", "\"NULL\""},
      {"NULLS", "NULL", "NULLS"}, {"NULL", "", "NULL"},
  };
  for (const Row& row : rows) EXPECT_EQ(CsvField(row.text, row.nullText), row.field);
  const Row alone[] = {
      {"", "", "\"\""}, {"", "NULL", "\"\""}, {"NULL", "NULL", "\"NULL\""}, {"Rome", "NULL", "Rome"}};
  for (const Row& row : alone) EXPECT_EQ(CsvOnlyField(row.text, row.nullText), row.field);
}

}  // namespace
}  // namespace scriptwells
