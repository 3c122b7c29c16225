// `scriptwells run --watch`: the script runs again when its file is saved, however an editor saves it.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <regex>
#include <thread>

#include "fixtures/temporary_directory.h"
#include "tests/tools/process.h"

namespace qv::cli::testing {
namespace {

namespace fs = std::filesystem;

class Watch : public ::testing::Test {
 protected:
  std::string Write(const std::string& script) const { return folder_.Write("a.js", script); }
  std::string File() const { return folder_.Path("a.js"); }
  Tool Watching(const std::string& options = "") const {
    return Tool("run --local --watch " + options, {File()});
  }

  // The separator, then the answer.
  void ExpectRun(const Process& process, const std::string& answer) const {
    const std::regex separator("--- " + File() + R"(, \d\d:\d\d:\d\d ---)");
    const std::string line = process.ReadErrorLine();
    EXPECT_TRUE(std::regex_match(line, separator)) << line;
    EXPECT_EQ(process.ReadLine(), answer);
  }
  static void ExpectEnd(Process& process, const std::string& rest = "") {
    process.Signal(SIGINT);
    const Outcome outcome = process.Finish();
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.out, rest);
    EXPECT_EQ(outcome.err, "");
  }

  TemporaryDirectory folder_;
};

TEST_F(Watch, RunsAgainAfterEachKindOfSave) {
  Write("1");
  Process process(Watching());
  ExpectRun(process, "1");
  Write("2");
  ExpectRun(process, "2");
  fs::rename(folder_.Write("a.js.new", "3"), File());
  ExpectRun(process, "3");
  fs::rename(File(), folder_.Path("a.js~"));
  Write("4");
  ExpectRun(process, "4");
  ExpectEnd(process);
}

// What an editor writes in several steps is one save, unless this test is stopped in between.
TEST_F(Watch, SavesInQuickSuccessionAreOne) {
  Write("0");
  Process process(Watching());
  ExpectRun(process, "0");
  const auto begin = std::chrono::steady_clock::now();
  for (const char* script : {"1", "2", "3"}) Write(script);
  const bool isQuick = std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(40);
  int runs = 0;
  std::string answer;
  for (; runs < 3 && answer != "3"; ++runs) {
    process.ReadErrorLine();
    answer = process.ReadLine();
  }
  EXPECT_EQ(answer, "3");
  if (isQuick) {
    EXPECT_EQ(runs, 1);
  }
  ExpectEnd(process);
}

TEST_F(Watch, OtherFilesDoNotCount) {
  Write("1");
  Process process(Watching());
  ExpectRun(process, "1");
  folder_.Write("b.js", "2");
  folder_.Write("a.js.swp", "3");
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  ExpectEnd(process);
}

TEST_F(Watch, FailuresEndNothing) {
  Write("throw new ScriptError(5, 'broken')");
  Process process(Watching());
  const std::string separator = process.ReadErrorLine();
  EXPECT_EQ(separator.substr(0, 4), "--- ");
  EXPECT_TRUE(StartsWith(process.ReadErrorLine(), "scriptwells: script fault 0x80040005 (5): broken"));
  Write("");
  process.ReadErrorLine();
  EXPECT_EQ(process.ReadErrorLine(), "scriptwells: the script is empty");
  Write("5");
  ExpectRun(process, "5");
  ExpectEnd(process);
}

TEST_F(Watch, TargetOfALinkIsWatched) {
  const std::string target = folder_.Write("elsewhere/real.js", "1");
  fs::create_symlink(target, File());
  Process process(Watching());
  ExpectRun(process, "1");
  folder_.Write("elsewhere/real.js", "2");
  ExpectRun(process, "2");
  fs::rename(folder_.Write("elsewhere/new", "3"), target);
  ExpectRun(process, "3");
  ExpectEnd(process);
}

TEST_F(Watch, CtrlCEndsARunningScript) {
  Write("for (;;);");
  Process process(Watching());
  EXPECT_EQ(process.ReadErrorLine().substr(0, 4), "--- ");
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  process.Signal(SIGINT);
  EXPECT_EQ(process.Finish().exit, 0);
}

TEST_F(Watch, EndsIfItsReaderHasEnded) {
  Write("1");
  Process process(Watching());
  ExpectRun(process, "1");
  process.CloseOutput();
  Write("2");
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_EQ(outcome.err.find("scriptwells:"), std::string::npos) << outcome.err;
}

TEST_F(Watch, FolderThatIsRemovedEndsIt) {
  Write("1");
  Process process(Watching());
  ExpectRun(process, "1");
  fs::remove_all(folder_.Path());
  process.Finish().Fails(6, "cannot watch " + File() + ": its folder is gone");
}

TEST_F(Watch, JsonHasSeparatorsToo) {
  Write("1");
  Process process(Watching("--json"));
  const std::string start = R"({"run":{"file":")" + File() + R"(","time":")";
  const std::string line = process.ReadErrorLine();
  EXPECT_EQ(line.substr(0, start.size()), start);
  EXPECT_TRUE(StartsWith(process.ReadLine(), "{\"type\":\"int\",\"value\":1"));
  ExpectEnd(process);
}

TEST_F(Watch, FileHasToBeThereAtTheStart) {
  Watching().Fails(6, "cannot read the script " + File() + ": No such file or directory");
  const std::string refusal = "--watch needs a script with a name (FILE); try 'scriptwells run --help'";
  Tool("run --local --watch -e 1").Fails(2, refusal);
  Tool("run --local --watch -").Fails(2, refusal);
}

}  // namespace
}  // namespace qv::cli::testing
