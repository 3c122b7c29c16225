// The progress of transfers: when it is drawn, as which text, and that only a terminal gets it.
#include "tools/transfer/progress_meter.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>

#include "tests/tools/transfer_server.h"
#include "tools/transfer/progress_text.h"

namespace qv::cli {
namespace {

using namespace testing;
using test::RawScript;

using Act = ProgressMeter::Act;

constexpr std::int64_t kMega = 1'000'000;

TEST(ProgressMeter, ShowsNothingForShortOrSmallTransfers) {
  ProgressMeter meter;
  EXPECT_EQ(meter.Update(true, 0, kMega, 100.0), Act::kKeep);
  EXPECT_EQ(meter.Update(true, 1000, kMega, 100.25), Act::kKeep);
  EXPECT_EQ(meter.Update(true, 2000, kMega, 100.49), Act::kKeep);
  EXPECT_EQ(meter.Update(true, 3000, kMega, 100.5), Act::kDraw);
  ProgressMeter small;
  EXPECT_EQ(small.Update(false, 0, 63'999, 0), Act::kKeep);
  EXPECT_EQ(small.Update(false, 5, 63'999, 100), Act::kKeep);
  EXPECT_EQ(small.Update(false, 5, 64'000, 200), Act::kDraw);
  ProgressMeter unknown;
  EXPECT_EQ(unknown.Update(false, 0, -1, 0), Act::kKeep);
  EXPECT_EQ(unknown.Update(false, 63'999, -1, 10), Act::kKeep);
  EXPECT_EQ(unknown.Update(false, 64'000, -1, 11), Act::kDraw);
}

TEST(ProgressMeter, DrawsTenTimesASecond) {
  ProgressMeter meter;
  meter.Update(true, 0, kMega, 0);
  int drawings = 0;
  for (int i = 1; i <= 4000; ++i)
    if (meter.Update(true, i, kMega, i * 0.001) == Act::kDraw) ++drawings;
  EXPECT_EQ(drawings, 36);  // at 0.5, 0.6, ... 4.0 s
}

TEST(ProgressMeter, EndClearsTheLine) {
  ProgressMeter meter;
  meter.Update(true, 0, kMega, 0);
  meter.Update(true, 500'000, kMega, 1);
  EXPECT_EQ(meter.Update(true, kMega, kMega, 1.01), Act::kClear);
  EXPECT_EQ(meter.Update(true, kMega, kMega, 9), Act::kClear);
}

TEST(ProgressMeter, OtherDirectionOrFewerBytesAreANewTransfer) {
  ProgressMeter meter;
  meter.Update(true, 0, kMega, 0);
  EXPECT_EQ(meter.Update(true, 500'000, kMega, 1), Act::kDraw);
  EXPECT_EQ(meter.State().name, "upload");
  EXPECT_EQ(meter.Update(false, 0, kMega, 2), Act::kKeep);
  EXPECT_EQ(meter.Update(false, 100'000, kMega, 2.5), Act::kDraw);
  EXPECT_EQ(meter.State().name, "download");
  EXPECT_EQ(meter.State().done, 100'000);
  EXPECT_EQ(meter.State().total, kMega);
  EXPECT_EQ(meter.State().seconds, 0.5);
  ProgressMeter fewer;
  fewer.Update(true, 0, kMega, 0);
  EXPECT_EQ(fewer.Update(true, 500'000, kMega, 1), Act::kDraw);
  EXPECT_EQ(fewer.Update(true, 0, kMega, 2), Act::kKeep);
  ProgressMeter named;
  named.Begin("a.txt");
  named.Update(true, 0, kMega, 0);
  EXPECT_EQ(named.Update(true, 1, kMega, 1), Act::kDraw);
  EXPECT_EQ(named.State().name, "a.txt");
  named.Begin("b.txt");
  EXPECT_EQ(named.Update(true, 2, kMega, 2), Act::kKeep);
  EXPECT_EQ(named.Update(true, 2, kMega, 3), Act::kDraw);
  EXPECT_EQ(named.State().name, "b.txt");
  EXPECT_EQ(named.State().seconds, 1);
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ProgressText, OfSizesAndTimes) {
  const std::pair<std::int64_t, const char*> rows[] = {{0, "0 B"},
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
  for (const auto& [bytes, text] : rows) EXPECT_EQ(SizeText(bytes), text);
  const std::pair<double, const char*> times[] = {
      {0, "0:00"},      {0.2, "0:01"},     {59, "0:59"},         {59.5, "1:00"},         {754, "12:34"},
      {3599, "59:59"},  {3600, "1:00:00"}, {3723, "1:02:03"},    {359999, "99:59:59"},   {359999.5, "--:--"},
      {1e300, "--:--"}, {-1, "--:--"},     {kInfinity, "--:--"}, {std::nan(""), "--:--"}};
  for (const auto& [seconds, text] : times) EXPECT_EQ(TimeText(seconds), text) << seconds;
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
  const ProgressState unknown{"report.pdf", 12300000, -1, 3};
  const LineRow shortRows[] = {{80, "report.pdf  12.3 MB  4.1 MB/s"},
                               {28, "report..  12.3 MB  4.1 MB/s"},
                               {27, "report.pdf  12.3 MB"},
                               {19, "report...  12.3 MB"},
                               {18, "report..  12.3 MB"},
                               {17, "12.3 MB"},
                               {8, "12.3 MB"},
                               {7, ""}};
  for (const LineRow& row : shortRows) EXPECT_EQ(ProgressLine(unknown, row.columns), row.line) << row.columns;
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

struct StateRow {
  ProgressState state;
  int columns;
  const char* line;
};

TEST(ProgressLine, ShowsTheState) {
  const StateRow rows[] = {
      // No rate yet, or a stalled transfer.
      {{"a", 0, 100000, 0}, 50, "a    0%  0 B of 100.0 kB  0 B/s  --:-- left"},
      {{"a", 0, -1, 0}, 60, "a  0 B  0 B/s"},
      {{"a", 0, 100000, 7}, 50, "a    0%  0 B of 100.0 kB  0 B/s  --:-- left"},
      // The percentage is rounded down.
      {{"a", 99999, 100000, 1}, 8, "a   99%"},
      {{"a", 100000, 100000, 1}, 8, "a  100%"},
      {{"a", 200000, 100000, 1}, 8, "a  100%"},
      {{"a", 0, 0, 1}, 8, "a  100%"},
      {{"a", 100000, 100000, 10}, 65, "a  100% [##########]  100.0 kB of 100.0 kB  10.0 kB/s  0:00 left"}};
  for (const StateRow& row : rows) EXPECT_EQ(ProgressLine(row.state, row.columns), row.line);
}

TEST(ProgressLine, NameIsEscapedAndCut) {
  const StateRow rows[] = {{{"a-very-long-name-of-a-report-for-2024.pdf", 500, 1000, 1},
                            80,
                            "a-very-long-name-of-a-report..   50%  500 B of 1.0 kB  500 B/s  0:01 left"},
                           {{"a\x1b[2J\r\nb", 500, 1000, 1}, 20, "a\\x1b[2J  b   50%"},
                           {{"a\xC2\x9Bz", 500, 1000, 1}, 20, "a\\xc2\\x9bz   50%"},
                           {{"a\xFF", 500, 1000, 1}, 20, "a\xEF\xBF\xBD   50%"},
                           {{"", 500, 1000, 1}, 20, " 50%"}};
  for (const StateRow& row : rows) EXPECT_EQ(ProgressLine(row.state, row.columns), row.line);
}

TEST(ProgressLine, WideCharactersTakeTwoColumns) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  // Six characters of two columns each have to fit into eight.
  const std::string line = ProgressLine(
      {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", 500, 1000, 1}, 15);
  static_cast<void>(std::setlocale(LC_CTYPE, before.c_str()));
  EXPECT_EQ(line, "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E..   50%");
}

constexpr char kClear[] = "\r\x1b[K";

class ProgressTerminal : public TransferServer {
 protected:
  // Half of the file, then silence for longer than the program waits with its line, then the rest.
  void AnswerSlowly(std::size_t half = 100000) {
    server_.Expect(RawScript()
                       .ReadRequest()
                       .Write(FileStart("out.bin", 2 * half, std::string(half, 'x')))
                       .Pause(1500)
                       .Write(std::string(half, 'y')));
  }
  // The rest of the output after the line was cleared for the last time.
  static std::string AfterLine(const Outcome& outcome) {
    const std::size_t cleared = outcome.out.rfind(kClear);
    EXPECT_NE(cleared, std::string::npos) << outcome.out;
    return cleared == std::string::npos ? "" : outcome.out.substr(cleared + sizeof kClear - 1);
  }

  std::string path_ = folder_.Path("out.bin");
};

TEST_F(ProgressTerminal, LineIsDrawnAndClearedAtTheEnd) {
  AnswerSlowly();
  const Outcome outcome = Adopted().OnTerminal();
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_TRUE(Holds(outcome.out, "\rout.bin   50% [")) << outcome.out;
  EXPECT_TRUE(Holds(outcome.out, "100.0 kB of 200.0 kB")) << outcome.out;
  EXPECT_EQ(AfterLine(outcome), path_ + "\r\n");
}

TEST_F(ProgressTerminal, NothingIsDrawnOtherwise) {
  AnswerSlowly(1000);
  EXPECT_EQ(Adopted().OnTerminal().out, path_ + "\r\n");
  AnswerSlowly();
  EXPECT_EQ(Adopted("--json --force").OnTerminal().out, "{\"path\":\"" + path_ + "\",\"bytes\":200000}\r\n");
  AnswerSlowly();
  EXPECT_EQ(Adopted("--force").Set("TERM", "dumb").OnTerminal().out, path_ + "\r\n");
  AnswerSlowly();
  Adopted("--force").Succeeds(path_ + "\n");
}

TEST_F(ProgressTerminal, InterruptClearsTheLineAndLeavesNoFile) {
  server_.Expect(
      RawScript().ReadRequest().Write(FileStart("out.bin", 200000, std::string(100000, 'x'))).Stall());
  const Outcome outcome = Adopted().OnTerminal("50% [", "\x03");
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_EQ(folder_.Count(), 0);
  EXPECT_EQ(AfterLine(outcome), "scriptwells: interrupted\r\n");
}

}  // namespace
}  // namespace qv::cli
