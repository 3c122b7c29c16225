// The program where standard streams are closed: `scriptwells ... <&- >&- 2>&-`.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::ClosedStreams;
using testing::Outcome;
using testing::Process;
using testing::Words;

Outcome RunWithout(const ClosedStreams& closed, const Words& arguments) {
  return Process(arguments, {}, nullptr, closed).Finish();
}

TEST(ClosedStreams, ScriptFromClosedInputIsRefused) {
  const Outcome outcome = RunWithout({0}, {"run", "--local", "-"});
  EXPECT_EQ(outcome.err, "scriptwells: cannot read the script from standard input: Bad file descriptor\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(ClosedStreams, PasswordFromClosedInputIsRefused) {
  const Outcome outcome =
      RunWithout({0}, {"run", "--server", "http://127.0.0.1:1", "--password-stdin", "-e", "1"});
  EXPECT_EQ(outcome.err, "scriptwells: cannot read the password: Bad file descriptor\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(ClosedStreams, ClosedInputThatNobodyReadsDoesNoHarm) {
  const Outcome outcome = RunWithout({0}, {"run", "--local", "-e", "6 * 7"});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, "42\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(ClosedStreams, AnswerToClosedOutputIsAFailure) {
  for (const char* code : {"6 * 7", "[{a: 1}]"}) {
    const Outcome outcome = RunWithout({1}, {"run", "--local", "-e", code});
    EXPECT_EQ(outcome.err, "scriptwells: cannot write the answer to standard output\n");
    EXPECT_EQ(outcome.exit, 6);
  }
  for (const char* word : {"--version", "describe"}) {
    const Outcome outcome = RunWithout({1}, {word});
    EXPECT_EQ(outcome.err, "scriptwells: cannot write to standard output\n");
    EXPECT_EQ(outcome.exit, 6);
  }
}

TEST(ClosedStreams, AnswerIsNotLostSilentlyWhenAllAreClosed) {
  EXPECT_EQ(RunWithout({0, 1, 2}, {"run", "--local", "-e", "6 * 7"}).exit, 6);
  EXPECT_EQ(RunWithout({0, 1, 2}, {"--version"}).exit, 6);
}

TEST(ClosedStreams, ClosedErrorStreamLosesWordsOnly) {
  const Outcome good = RunWithout({2}, {"run", "--local", "-e", "6 * 7"});
  EXPECT_EQ(good.out, "42\n");
  EXPECT_EQ(good.exit, 0);
  const Outcome bad = RunWithout({2}, {"run", "--local", "-e", "throw 'no'"});
  EXPECT_EQ(bad.out, "");
  EXPECT_EQ(bad.exit, 1);
}

// The file is opened while a stream's number is free, and must not be written to in its place.
TEST(ClosedStreams, NoFileTakesTheNumberOfAStream) {
  const testing::FreshDirectory folder;
  const std::string script = folder.Path() + "/script.js";
  std::ofstream(script) << "6 * 7";
  EXPECT_EQ(RunWithout({0, 1, 2}, {"run", "--local", script}).exit, 6);
  std::ifstream file(script);
  std::string text;
  std::getline(file, text);
  EXPECT_EQ(text, "6 * 7");
}

}  // namespace
}  // namespace qv::cli
