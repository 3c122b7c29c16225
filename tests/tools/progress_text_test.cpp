#include "tools/progress_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>

namespace qv::cli {
namespace {

struct SizeRow {
  std::int64_t bytes;
  const char* text;
};

TEST(SizeText, UnitFollowsTheSize) {
  const SizeRow rows[] = {{0, "0 B"},
                          {1, "1 B"},
                          {999, "999 B"},
                          {1000, "1.0 kB"},
                          {1500, "1.5 kB"},
                          {64000, "64.0 kB"},
                          {999949, "999.9 kB"},
                          {999950, "1.0 MB"},
                          {12345678, "12.3 MB"},
                          {999999999, "1.0 GB"},
                          {5000000000, "5.0 GB"},
                          {7200000000000, "7.2 TB"},
                          {3000000000000000, "3.0 PB"},
                          {INT64_MAX, "9.2 EB"}};
  for (const SizeRow& row : rows) EXPECT_EQ(SizeText(row.bytes), row.text);
}

struct TimeRow {
  double seconds;
  const char* text;
};

TEST(TimeText, IsRoundedUpAndGrowsHours) {
  const TimeRow rows[] = {{0, "0:00"},
                          {0.2, "0:01"},
                          {59, "0:59"},
                          {59.5, "1:00"},
                          {754, "12:34"},
                          {3599, "59:59"},
                          {3600, "1:00:00"},
                          {3723, "1:02:03"},
                          {359999, "99:59:59"},
                          {359999.5, "--:--"},
                          {1e300, "--:--"},
                          {-1, "--:--"},
                          {std::numeric_limits<double>::infinity(), "--:--"},
                          {std::nan(""), "--:--"}};
  for (const TimeRow& row : rows) EXPECT_EQ(TimeText(row.seconds), row.text) << row.seconds;
}

struct LineRow {
  int columns;
  const char* line;
};

TEST(ProgressLine, LeavesOutWhatDoesNotFit) {
  const ProgressState state{"report.pdf", 12300000, 29300000, 3};
  const LineRow rows[] = {
      {120, "report.pdf   41% [############                  ]  12.3 MB of 29.3 MB  4.1 MB/s  0:05 left"},
      {80, "report.pdf   41% [#######            ]  12.3 MB of 29.3 MB  4.1 MB/s  0:05 left"},
      {71, "report.pdf   41% [####      ]  12.3 MB of 29.3 MB  4.1 MB/s  0:05 left"},
      {70, "report.pdf   41%  12.3 MB of 29.3 MB  4.1 MB/s  0:05 left"},
      {58, "report.pdf   41%  12.3 MB of 29.3 MB  4.1 MB/s  0:05 left"},
      {57, "report...   41%  12.3 MB of 29.3 MB  4.1 MB/s  0:05 left"},
      {56, "report..   41%  12.3 MB of 29.3 MB  4.1 MB/s  0:05 left"},
      {55, "report.pdf   41%  12.3 MB of 29.3 MB  4.1 MB/s"},
      {45, "report..   41%  12.3 MB of 29.3 MB  4.1 MB/s"},
      {44, "report.pdf   41%  12.3 MB of 29.3 MB"},
      {35, "report..   41%  12.3 MB of 29.3 MB"},
      {34, "report.pdf   41%"},
      {17, "report.pdf   41%"},
      {15, "report..   41%"},
      {14, " 41%"},
      {5, " 41%"},
      {4, ""},
      {1, ""},
      {0, ""},
      {-7, ""}};
  for (const LineRow& row : rows) EXPECT_EQ(ProgressLine(state, row.columns), row.line) << row.columns;
}

TEST(ProgressLine, NeverFillsTheLastColumn) {
  const ProgressState states[] = {{"report.pdf", 12300000, 29300000, 3},
                                  {"report.pdf", 12300000, -1, 3},
                                  {std::string(300, 'x'), 1, INT64_MAX, 1e-9},
                                  {"", INT64_MAX, INT64_MAX, 1e9}};
  for (const ProgressState& state : states)
    for (int columns = 1; columns <= 200; ++columns)
      EXPECT_LT(ProgressLine(state, columns).size(), static_cast<std::size_t>(columns));
}

TEST(ProgressLine, WithoutATotalThereIsNoShare) {
  const ProgressState state{"report.pdf", 12300000, -1, 3};
  const LineRow rows[] = {{80, "report.pdf  12.3 MB  4.1 MB/s"},
                          {28, "report..  12.3 MB  4.1 MB/s"},
                          {27, "report.pdf  12.3 MB"},
                          {19, "report...  12.3 MB"},
                          {18, "report..  12.3 MB"},
                          {17, "12.3 MB"},
                          {8, "12.3 MB"},
                          {7, ""}};
  for (const LineRow& row : rows) EXPECT_EQ(ProgressLine(state, row.columns), row.line) << row.columns;
}

TEST(ProgressLine, StartHasNoRateYet) {
  EXPECT_EQ(ProgressLine({"a", 0, 100000, 0}, 50), "a    0%  0 B of 100.0 kB  0 B/s  --:-- left");
  EXPECT_EQ(ProgressLine({"a", 0, -1, 0}, 60), "a  0 B  0 B/s");
}

TEST(ProgressLine, StalledTransferTellsNoTime) {
  EXPECT_EQ(ProgressLine({"a", 0, 100000, 7}, 50), "a    0%  0 B of 100.0 kB  0 B/s  --:-- left");
}

TEST(ProgressLine, ShareIsRoundedDownAndEndsAtAll) {
  EXPECT_EQ(ProgressLine({"a", 99999, 100000, 1}, 8), "a   99%");
  EXPECT_EQ(ProgressLine({"a", 100000, 100000, 1}, 8), "a  100%");
  EXPECT_EQ(ProgressLine({"a", 200000, 100000, 1}, 8), "a  100%");
  EXPECT_EQ(ProgressLine({"a", 0, 0, 1}, 8), "a  100%");
}

TEST(ProgressLine, BarIsFullAtTheEnd) {
  EXPECT_EQ(ProgressLine({"a", 100000, 100000, 10}, 65),
            "a  100% [##########]  100.0 kB of 100.0 kB  10.0 kB/s  0:00 left");
}

TEST(ProgressLine, LongNameLosesItsEnd) {
  EXPECT_EQ(ProgressLine({"a-very-long-name-of-a-report-for-2024.pdf", 500, 1000, 1}, 80),
            "a-very-long-name-of-a-report..   50%  500 B of 1.0 kB  500 B/s  0:01 left");
}

TEST(ProgressLine, NameCannotSteerTheTerminal) {
  EXPECT_EQ(ProgressLine({"a\x1b[2J\r\nb", 500, 1000, 1}, 20), "a\\x1b[2J  b   50%");
  EXPECT_EQ(ProgressLine({"a\xC2\x9Bz", 500, 1000, 1}, 20), "a\\xc2\\x9bz   50%");
}

TEST(ProgressLine, BytesThatAreNoTextAreReplaced) {
  EXPECT_EQ(ProgressLine({"a\xFF", 500, 1000, 1}, 20), "a\xEF\xBF\xBD   50%");
}

TEST(ProgressLine, NoNameLeavesNoGap) {
  EXPECT_EQ(ProgressLine({"", 500, 1000, 1}, 20), " 50%");
}

TEST(ProgressLine, WideCharactersTakeTwoColumns) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  // Six characters of two columns each have to fit into eight.
  const std::string line = ProgressLine(
      {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", 500, 1000, 1}, 15);
  std::setlocale(LC_CTYPE, before.c_str());
  EXPECT_EQ(line, "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E..   50%");
}

}  // namespace
}  // namespace qv::cli
