// Results in the order of the rows, as CSV and as JSON lines, and the rows without one.
#include <gtest/gtest.h>

#include <sstream>

#include "fixtures/temporary_directory.h"
#include "scriptwells/error.h"
#include "tests/tools/refusal.h"
#include "tools/batch/batch_progress.h"
#include "tools/batch/ordered_rows.h"
#include "tools/batch/results_writer.h"
#include "tools/batch/row_caller.h"
#include "tools/transfer/progress_text.h"

namespace qv::cli {
namespace {

using namespace testing;
using scriptwells::Phase;
using scriptwells::Value;

const RowOutcome kDone{Fate::kDone, "1"};

class Results : public ::testing::Test {
 protected:
  // The results of these rows.
  std::string Written(OutputFormat format, const std::string& head, const std::vector<DataRow>& rows,
                      const std::vector<RowOutcome>& outcomes) const {
    const RowsFile file(folder_.Write("rows.csv", head));
    std::ostringstream out;
    ResultsWriter writer(out, format, file, folder_.Path("failed"));
    for (std::size_t i = 0; i < rows.size(); ++i) writer.Write(rows[i], outcomes[i]);
    return out.str();
  }

  TemporaryDirectory folder_;
};

TEST_F(Results, AnswersAreFieldsOrObjects) {
  EXPECT_EQ(AnswerText(OutputFormat::kCsv, Value("a,b")), "\"a,b\"");
  EXPECT_EQ(AnswerText(OutputFormat::kCsv, Value("")), "\"\"");
  EXPECT_EQ(AnswerText(OutputFormat::kCsv, Value()), "");
  EXPECT_EQ(AnswerText(OutputFormat::kCsv, Value(scriptwells::Table())),
            "\"{\"\"columns\"\":[],\"\"rows\"\":[]}\"");
  EXPECT_EQ(AnswerText(OutputFormat::kJson, Value(42)), R"({"type":"int","value":42,"tag":22})");
  EXPECT_EQ(AnswerText(OutputFormat::kJson, Value(scriptwells::Table())),
            R"({"type":"recordlist","columns":[],"rows":[]})");
}

TEST_F(Results, CsvRepeatsTheRow) {
  EXPECT_EQ(Written(OutputFormat::kCsv, "a:int,b\n", {{1, {"5", "x,y"}}, {2, {"6", ""}}}, {kDone, kDone}),
            "a:int,b,answer\r\n5,\"x,y\",1\r\n6,\"\",1\r\n");
  EXPECT_EQ(folder_.Read("failed"), "");
}

TEST_F(Results, JsonHasOneLineForEachRow) {
  EXPECT_EQ(Written(OutputFormat::kJson, "a:int,b\n", {{3, {"5", "x\"\x1b"}}}, {{Fate::kDone, "{}"}}),
            R"({"row":3,"cells":{"a":"5","b":"x\"\u001b"},"answer":{}})"
            "\n");
}

TEST_F(Results, FailedRowsAreRowsAgain) {
  const std::vector<DataRow> rows{{1, {"5", "9", "old", "n"}}, {2, {"6", "8", "old", "n"}}};
  const std::string head = "a:int,row:ignore,error:ignore,note:ignore\n";
  Written(OutputFormat::kCsv, head, rows, {{Fate::kFailed, "no, not"}, {Fate::kUnknown, "lost"}});
  EXPECT_EQ(folder_.Read("failed"),
            "a:int,note:ignore,row:ignore,error:ignore\r\n5,n,1,\"no, not\"\r\n6,n,2,lost\r\n");
  EXPECT_EQ(ExamineRows(folder_.Path("failed")).count, 2);
  EXPECT_EQ(Written(OutputFormat::kCsv, "a\n", {{1, {"5"}}}, {{}}), "a,answer\r\n");
}

TEST(OrderedRows, ComeInTheirOrder) {
  std::string order;
  OrderedRows rows([&](const DataRow& row, const RowOutcome&) { order += std::to_string(row.number); });
  for (const int number : {2, 4, 1, 3, 6}) rows.Put({number, {}}, kDone);
  EXPECT_EQ(order, "1234");
  EXPECT_TRUE(rows.HasRoom());
}

TEST(OrderedRows, KeepALimitedNumberAndSize) {
  OrderedRows rows([](const DataRow&, const RowOutcome&) {});
  for (int number = 2; number <= 1025; ++number) {
    EXPECT_TRUE(rows.HasRoom()) << number;
    rows.Put({number, {}}, kDone);
  }
  EXPECT_FALSE(rows.HasRoom());
  rows.Put({1, {}}, kDone);
  EXPECT_TRUE(rows.HasRoom());
  rows.Put({1027, {}}, {Fate::kDone, std::string(65 << 20, 'x')});
  EXPECT_FALSE(rows.HasRoom());
  rows.Put({1026, {}}, kDone);
  EXPECT_TRUE(rows.HasRoom());
}

TEST(Fates, SayWhetherTheScriptMayHaveRun) {
  const std::pair<Phase, Fate> rows[] = {
      {Phase::kAddress, Fate::kUnsent},    {Phase::kConnect, Fate::kUnsent},
      {Phase::kTls, Fate::kUnsent},        {Phase::kSend, Fate::kUnknown},
      {Phase::kWait, Fate::kUnknown},      {Phase::kReceive, Fate::kUnknown},
      {Phase::kCancelled, Fate::kUnknown}, {Phase::kAnswer, Fate::kFailed},
      {Phase::kSession, Fate::kFailed},    {Phase::kScript, Fate::kFailed},
      {Phase::kLocalFile, Fate::kFailed},  {Phase::kConversion, Fate::kFailed}};
  for (const auto& [phase, fate] : rows)
    EXPECT_EQ(FateAfter(scriptwells::Error(phase, "")), fate) << scriptwells::ToString(phase);
  for (const auto& [status, fate] : {std::pair(502, Fate::kUnknown), std::pair(504, Fate::kUnknown),
                                     std::pair(500, Fate::kFailed), std::pair(413, Fate::kFailed)}) {
    scriptwells::ErrorDetails details;
    details.status = status;
    EXPECT_EQ(FateAfter(scriptwells::Error(Phase::kAnswer, "", details)), fate) << status;
  }
}

TEST(BatchProgress, CountsRowsWithoutEarlierOnesInTheRate) {
  ProgressState state;
  state.name = ProgressName("rows.csv", {400, 2, 1, 303, {}});
  state.done = 403;
  state.total = 1003;
  state.earlier = 303;
  state.seconds = 10;
  state.unit = "rows";
  EXPECT_EQ(ProgressLine(state, 80),
            "rows.csv, 3 failed   40% [####        ]  403 of 1003 rows  10 rows/s  1:00 left");
  EXPECT_EQ(ProgressName("rows.csv", {}), "rows.csv");
}

}  // namespace
}  // namespace qv::cli
