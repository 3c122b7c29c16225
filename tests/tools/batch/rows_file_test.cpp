// Rows as parameters: the head, the types, and errors that are found before the first call.
#include "tools/batch/rows_file.h"

#include <gtest/gtest.h>

#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using namespace testing;
using scriptwells::Value;

class Rows : public ::testing::Test {
 protected:
  std::string File(const std::string& text) const { return folder_.Write("rows.csv", text); }
  RowsFacts Examined(const std::string& text) const { return ExamineRows(File(text)); }
  std::string Refusal(const std::string& text) const {
    return RefusalOf([&] { Examined(text); }).substr(folder_.Path("rows.csv").size());
  }

  TemporaryDirectory folder_;
};

TEST_F(Rows, CellsHaveTheTypesOfTheHead) {
  RowsFile file(File("id:int,name,odd:name:date,note:ignore\n7,\"=a:b\",2024-03-05,x\n"));
  DataRow row;
  ASSERT_TRUE(file.Next(row));
  EXPECT_EQ(row.number, 1);
  const scriptwells::Arguments arguments = ArgumentsOf(file.Columns(), row);
  ASSERT_EQ(arguments.size(), 3U);
  const auto* argument = &*arguments.begin();
  EXPECT_EQ(argument[0].Name(), "id");
  EXPECT_EQ(*argument[0].GetValue(), Value(7));
  EXPECT_EQ(*argument[1].GetValue(), Value("=a:b"));
  EXPECT_EQ(argument[2].Name(), "odd:name");
  EXPECT_EQ(*argument[2].GetValue(), Value(scriptwells::Date{2024, 3, 5}));
  EXPECT_FALSE(file.Next(row));
  EXPECT_FALSE(HoldsFiles(file.Columns()));
  EXPECT_TRUE(HoldsFiles(RowsFile(File("doc:file\n")).Columns()));
}

TEST_F(Rows, AreExaminedAsAWhole) {
  const RowsFacts facts = Examined("a:double,b\n1.23456789,x\n2.3456789,y\n3,z\n");
  EXPECT_EQ(facts.count, 3);
  ASSERT_EQ(facts.notes.size(), 1U);
  EXPECT_EQ(facts.notes[0], "column 'a', as in row 1: the parameter travels with 6 significant digits");
  EXPECT_EQ(Examined("a\n").count, 0);
}

TEST_F(Rows, WhatCannotBeSentIsRefusedWithItsLine) {
  const std::pair<const char*, const char*> rows[] = {
      {"", ", line 1: the head of the columns is missing"},
      {"a,:int\n", ", line 1: a column has no name"},
      {"a=b\n", ", line 1: the column 'a=b' holds '='"},
      {"a,a:int\n", ", line 1: the column 'a' is there twice"},
      {"a,b\n1,2\n1\n", ", line 3: 1 cells, and the head has 2"},
      {"a,b\n1,2,3\n", ", line 2: 3 cells, and the head has 2"}};
  for (const auto& [text, message] : rows) EXPECT_EQ(Refusal(text), message);
  EXPECT_TRUE(StartsWith(Refusal("a:int\n\n5\nx\n"), ", line 4: parameter 'a': "));
  EXPECT_TRUE(StartsWith(Refusal("a:itn\n5\n"), ", line 2: parameter 'a': unknown type 'itn' (known: "));
  EXPECT_TRUE(Holds(Refusal("a:file\n/nonexistent/x\n"), "No such file"));
}

}  // namespace
}  // namespace qv::cli
