// The progress of long transfers: on a terminal, and nowhere else.
#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::FileStart;
using testing::Outcome;
using testing::RunOnTerminal;
using testing::RunTool;
using testing::Variables;
using testing::Words;

constexpr char kClear[] = "\r\x1b[K";
constexpr std::size_t kHalf = 100000;

bool Holds(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

class ProgressTerminal : public testing::TransferServer {
 protected:
  // Half of the file, then silence for longer than the program waits with its line, then the rest.
  void AnswerSlowly() {
    server_.Expect(test::RawScript()
                       .ReadRequest()
                       .Write(FileStart("out.bin", 2 * kHalf, std::string(kHalf, 'x')))
                       .Pause(1500)
                       .Write(std::string(kHalf, 'y')));
  }
  std::string PathLine() const { return folder_.Path() + "/out.bin"; }
};

TEST_F(ProgressTerminal, LineIsDrawnAndGoesAtTheEnd) {
  AnswerSlowly();
  const Outcome outcome = RunOnTerminal(Adopted(), "", "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_TRUE(Holds(outcome.out, "\rout.bin   50% [")) << outcome.out;
  EXPECT_TRUE(Holds(outcome.out, "100.0 kB of 200.0 kB")) << outcome.out;
  const std::size_t cleared = outcome.out.rfind(kClear);
  ASSERT_NE(cleared, std::string::npos);
  EXPECT_EQ(outcome.out.substr(cleared), kClear + PathLine() + "\r\n");
}

TEST_F(ProgressTerminal, SmallFilesDrawNothing) {
  server_.Expect(test::RawScript()
                     .ReadRequest()
                     .Write(FileStart("out.bin", 2000, std::string(1000, 'x')))
                     .Pause(1000)
                     .Write(std::string(1000, 'y')));
  EXPECT_EQ(RunOnTerminal(Adopted(), "", "").out, PathLine() + "\r\n");
}

TEST_F(ProgressTerminal, JsonDrawsNothing) {
  AnswerSlowly();
  EXPECT_EQ(RunOnTerminal(Adopted({"--json"}), "", "").out,
            "{\"path\":\"" + PathLine() + "\",\"bytes\":200000}\r\n");
}

TEST_F(ProgressTerminal, TerminalThatCannotClearItsLineSeesNothing) {
  AnswerSlowly();
  EXPECT_EQ(RunOnTerminal(Adopted(), "", "", {{"TERM", "dumb"}}).out, PathLine() + "\r\n");
}

TEST_F(ProgressTerminal, WithoutATerminalNothingIsWritten) {
  AnswerSlowly();
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.out, PathLine() + "\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(ProgressTerminal, InterruptClearsTheLineAndLeavesNoFile) {
  server_.Expect(test::RawScript()
                     .ReadRequest()
                     .Write(FileStart("out.bin", 2 * kHalf, std::string(kHalf, 'x')))
                     .Stall());
  const Outcome outcome = RunOnTerminal(Adopted(), "50% [", "\x03");
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_EQ(Count(), 0);
  const std::size_t cleared = outcome.out.rfind(kClear);
  ASSERT_NE(cleared, std::string::npos);
  EXPECT_EQ(outcome.out.substr(cleared), std::string(kClear) + "scriptwells: interrupted\r\n");
}

}  // namespace
}  // namespace qv::cli
