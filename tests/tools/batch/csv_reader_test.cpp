// CSV as other programs write it, and files that are not CSV.
#include "tools/batch/csv_reader.h"

#include <gtest/gtest.h>

#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using namespace testing;

class CsvReading : public ::testing::Test {
 protected:
  std::vector<Words> RowsOf(const std::string& text) const {
    CsvReader reader(folder_.Write("rows.csv", text));
    std::vector<Words> rows;
    for (Words cells; reader.Next(cells);) rows.push_back(cells);
    return rows;
  }
  // Without the path.
  std::string Refusal(const std::string& text) const {
    const std::string message = RefusalOf([&] { RowsOf(text); });
    const std::string start = folder_.Path("rows.csv") + ", ";
    return StartsWith(message, start) ? message.substr(start.size()) : message;
  }

  TemporaryDirectory folder_;
};

TEST_F(CsvReading, CellsQuotesAndLineEnds) {
  const std::vector<Words> plain{{"a", "b"}, {"1", ""}};
  EXPECT_EQ(RowsOf("a,b\n1,\n"), plain);
  EXPECT_EQ(RowsOf("a,b\r\n1,"), plain);
  EXPECT_EQ(RowsOf("\xEF\xBB\xBF\n\r\na,b\n\n1,\"\"\n\n"), plain);
  EXPECT_EQ(RowsOf("\"a,\"\"b\"\"\r\nc\", d \n"), (std::vector<Words>{{"a,\"b\"\r\nc", " d "}}));
  EXPECT_EQ(RowsOf("\"\"\n"), (std::vector<Words>{{""}}));
  EXPECT_EQ(RowsOf(""), std::vector<Words>());
  EXPECT_EQ(RowsOf("\n\r\n"), std::vector<Words>());
}

TEST_F(CsvReading, CellsLongerThanTheBuffer) {
  const std::string cell(200'001, 'x');
  EXPECT_EQ(RowsOf(cell + ",\"" + cell + "\"\n1,2"), (std::vector<Words>{{cell, cell}, {"1", "2"}}));
}

TEST_F(CsvReading, WhatIsNoCsvIsRefusedWithItsLine) {
  EXPECT_EQ(Refusal("a\n\"b"), "line 2: a quote is never closed");
  EXPECT_EQ(Refusal("a\n\"x\ny\"z\n"), "line 2: text after a closing quote");
  EXPECT_EQ(Refusal("\"a\nb\"\nc\"d\"\n"), "line 3: a quote in a cell without quotes around it");
  EXPECT_EQ(Refusal("a\rb\n"), "line 1: a carriage return without a line feed");
  EXPECT_EQ(Refusal("a\n\xFF\n"), "line 2: a cell is not valid UTF-8");
  EXPECT_EQ(Refusal(std::string(40'000, ',')), "line 1: more than 32767 cells");
  EXPECT_EQ(Refusal("\"" + std::string(17 << 20, 'x')),
            "line 1: a row is longer than 16 MB; is a quote never closed?");
}

TEST_F(CsvReading, OnlyRegularFilesAreRead) {
  EXPECT_EQ(RefusalOf([&] { CsvReader reader(folder_.Path("none")); }),
            "cannot read the rows " + folder_.Path("none") + ": No such file or directory");
  EXPECT_EQ(RefusalOf([&] { CsvReader reader(folder_.Path()); }),
            "cannot read the rows " + folder_.Path() + ": Is a directory");
  EXPECT_EQ(RefusalOf([] { CsvReader reader("/dev/zero"); }),
            "cannot read the rows /dev/zero: Not a regular file");
}

TEST_F(CsvReading, DigestChangesWithEveryByte) {
  const auto digest = [&](const std::string& text) {
    CsvReader reader(folder_.Write("rows.csv", text));
    for (Words cells; reader.Next(cells);) continue;
    return reader.DigestSoFar();
  };
  EXPECT_EQ(digest("a\n1\n"), digest("a\n1\n"));
  EXPECT_NE(digest("a\n1\n"), digest("a\n2\n"));
  EXPECT_NE(digest("a\n1\n"), digest("a\n1"));
}

}  // namespace
}  // namespace qv::cli
