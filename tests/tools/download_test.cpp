// `scriptwells download` against a server that answers as the test says.
#include <signal.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::FileAnswer;
using testing::FileStart;
using testing::Outcome;
using testing::Process;
using testing::RunTool;
using testing::SessionClosed;
using testing::SessionOpened;
using testing::StatusAnswer;

class Download : public testing::TransferServer {
 protected:
  // Waits until something stands in the directory.
  bool FileBegins() const {
    for (int i = 0; i < 400 && Count() == 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(25));
    return Count() == 1;
  }
};

TEST_F(Download, OpenSessionIsUsedAndNothingElseIsAsked) {
  Answer({FileAnswer("out.txt", "text")});
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.out, folder_.Path() + "/out.txt\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Read(folder_.Path() + "/out.txt"), "text");
  EXPECT_TRUE(WasSent("GET /f?t=1 HTTP/1.1\r\n"));
  EXPECT_TRUE(WasSent("\r\nusid: abc\r\n"));
  EXPECT_FALSE(WasSent("POST"));
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(Download, PathAndSizeAsJson) {
  Answer({FileAnswer("out.txt", "text")});
  const Outcome outcome = RunTool(Adopted({"--json"}));
  EXPECT_EQ(outcome.out, "{\"path\":\"" + folder_.Path() + "/out.txt\",\"bytes\":4}\n");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Download, SessionIsOpenedOnTheServerOfTheUrlAndClosed) {
  Answer({SessionOpened(), FileAnswer("out.txt", ""), SessionClosed()});
  const Outcome outcome = RunTool({"download", Url(), folder_.Path(), "--user", "joe"});
  EXPECT_EQ(outcome.out, folder_.Path() + "/out.txt\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_TRUE(WasSent("#CreateUserSession\r\n"));
  EXPECT_TRUE(WasSent("\r\nusid: u1\r\n"));
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(Download, FileOfTheSameNameStays) {
  std::ofstream(folder_.Path() + "/out.txt") << "something longer";
  const std::string reason = "the download failed: Couldn't write file " + folder_.Path() +
                             "/out.txt: File exists (--force replaces it)";
  Answer({FileAnswer("out.txt", "text")});
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: " + reason + "\n");
  EXPECT_EQ(outcome.exit, 6);
  Answer({FileAnswer("out.txt", "text")});
  EXPECT_EQ(RunTool(Adopted({"--json"})).err,
            "{\"error\":{\"kind\":\"file exists\",\"message\":\"" + reason + "\",\"exit\":6}}\n");
  EXPECT_EQ(Read(folder_.Path() + "/out.txt"), "something longer");
  EXPECT_EQ(Count(), 1);
}

TEST_F(Download, FileOfTheSameNameIsReplacedOnRequest) {
  std::ofstream(folder_.Path() + "/out.txt") << "something longer";
  Answer({FileAnswer("out.txt", "text")});
  EXPECT_EQ(RunTool(Adopted({"--force"})).exit, 0);
  EXPECT_EQ(Read(folder_.Path() + "/out.txt"), "text");
}

TEST_F(Download, LinkThatLeadsNowhereStays) {
  std::filesystem::create_symlink("nowhere", folder_.Path() + "/out.txt");
  Answer({FileAnswer("out.txt", "text")});
  EXPECT_EQ(RunTool(Adopted()).exit, 6);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path() + "/out.txt"));
}

TEST_F(Download, FileThatAppearsMeanwhileStays) {
  server_.Expect(
      test::RawScript().ReadRequest().Write(FileStart("out.txt", 8, "half")).Pause(1000).Write("half"));
  Process process(Adopted());
  ASSERT_TRUE(FileBegins());
  std::ofstream(folder_.Path() + "/out.txt") << "theirs";
  EXPECT_EQ(process.Finish().exit, 6);
  EXPECT_EQ(Read(folder_.Path() + "/out.txt"), "theirs");
  EXPECT_EQ(Count(), 1);
}

TEST_F(Download, HiddenNameIsSavedOnRequestOnly) {
  Answer({FileAnswer(".bashrc", "text")});
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: the answer of " + Origin() +
                " names the file '.bashrc', which is refused: it begins with '.' (--force saves it)\n");
  EXPECT_EQ(outcome.exit, 7);
  EXPECT_EQ(Count(), 0);
  Answer({FileAnswer(".bashrc", "text")});
  EXPECT_EQ(RunTool(Adopted({"--force"})).out, folder_.Path() + "/.bashrc\n");
  EXPECT_EQ(Read(folder_.Path() + "/.bashrc"), "text");
}

TEST_F(Download, ControlCharactersAreNotForcedEither) {
  Answer({FileAnswer("a\x1b[2J", "text")});
  EXPECT_EQ(RunTool(Adopted({"--force"})).exit, 7);
  EXPECT_EQ(Count(), 0);
}

TEST_F(Download, NameThatBeginsWithAnEqualsSignIsSaved) {
  Answer({FileAnswer("=a.txt", "text")});
  EXPECT_EQ(RunTool(Adopted()).out, folder_.Path() + "/=a.txt\n");
}

// The library reads no name out of it.
TEST_F(Download, HeaderThatIsOnlyANameNamesNoFile) {
  Answer({test::RawAnswerText("text", "Content-Disposition: =a.txt\r\n")});
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: the answer of " + Origin() + " names no file\n");
  EXPECT_EQ(outcome.exit, 7);
  EXPECT_EQ(Count(), 0);
}

TEST_F(Download, ErrorPageIsNoFile) {
  Answer({SessionOpened(), StatusAnswer("404 Not Found"), SessionClosed()});
  const Outcome outcome = RunTool({"download", Url(), folder_.Path(), "--user", "joe"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: " + Origin() +
                             " answered the download with the status 404 (a file of another session is "
                             "fetched with that session's id, "
                             "--usid, or by run --save)\n");
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
  Answer({"HTTP/1.1 500 X\r\nContent-Disposition: a; filename=page\r\nContent-Length: 4\r\n\r\noops"});
  EXPECT_EQ(RunTool(Adopted({"--json"})).err,
            "{\"error\":{\"kind\":\"download refused\",\"message\":\"" + Origin() +
                " answered the download with the status 500\",\"exit\":1}}\n");
  EXPECT_EQ(Count(), 0);
}

TEST_F(Download, NameThatLeavesTheDirectoryIsRefused) {
  for (const std::string name : {"../x", "..", "a\\b", "/etc/x", ""}) {
    Answer({FileAnswer(name, "text")});
    const Outcome outcome = RunTool(Adopted());
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "scriptwells: answer not understood: the answer of " + Origin() +
                               " names the file '" + name +
                               "', which is refused: it would not stay in the directory\n");
    EXPECT_EQ(outcome.exit, 7);
  }
  EXPECT_EQ(Count(), 0);
}

TEST_F(Download, AnswerWithoutANameIsNotUnderstood) {
  Answer({test::RawAnswerText("text")});
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: the answer of " + Origin() + " names no file\n");
  EXPECT_EQ(outcome.exit, 7);
}

TEST_F(Download, NothingIsAskedWhenThisSideIsWrong) {
  const Outcome directory = RunTool({"download", Url(), "/nonexistent/d", "--usid", "abc"});
  EXPECT_EQ(directory.err, "scriptwells: cannot save into /nonexistent/d: No such file or directory\n");
  EXPECT_EQ(directory.exit, 6);
  const Outcome url = RunTool({"download", "out.txt", folder_.Path(), "--usid", "abc"});
  EXPECT_EQ(url.err, "scriptwells: URL 'out.txt' does not begin with http:// or https://\n");
  EXPECT_EQ(url.exit, 6);
  const Outcome usid = RunTool({"download", Url(), folder_.Path(), "--usid", "a\r\nX: y"});
  EXPECT_EQ(usid.err, "scriptwells: the session's id holds a character that no header carries\n");
  EXPECT_EQ(usid.exit, 6);
  EXPECT_EQ(server_.Connections(), 0u);
}

TEST_F(Download, TargetThatIsADirectoryIsALocalFailure) {
  std::filesystem::create_directory(folder_.Path() + "/out.txt");
  Answer({FileAnswer("out.txt", "text")});
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.err, "scriptwells: the download failed: Couldn't write file " + folder_.Path() +
                             "/out.txt: Is a directory\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST_F(Download, UnreachableServerIsNamed) {
  const Outcome outcome = RunTool({"download", "http://127.0.0.1:1/f", folder_.Path(), "--usid", "abc"});
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err.rfind("scriptwells: cannot reach http://127.0.0.1:1: ", 0), 0u) << outcome.err;
}

TEST_F(Download, FileThatBreaksOffLeavesNothing) {
  server_.Expect(test::RawScript().ReadRequest().Write(FileStart("out.txt", 100, "half")).Close());
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err.rfind("scriptwells: the answer of " + Origin() + " broke off: ", 0), 0u)
      << outcome.err;
  EXPECT_EQ(Count(), 0);
}

TEST_F(Download, SilenceIsATimeoutAndLeavesNothing) {
  server_.Expect(test::RawScript().ReadRequest().Write(FileStart("out.txt", 100, "half")).Stall());
  const Outcome outcome = RunTool(Adopted({"--timeout", "0.3"}));
  EXPECT_EQ(outcome.exit, 4);
  EXPECT_EQ(Count(), 0);
}

TEST_F(Download, FileThatDripsEndsWithTheTimeForAll) {
  test::RawScript script;
  script.ReadRequest().Write(FileStart("out.txt", 100000, "half"));
  for (int i = 0; i < 1000; ++i) script.Write("x").Pause(20);
  server_.Expect(script);
  const Outcome outcome = RunTool(Adopted({"--max-time", "500ms"}));
  EXPECT_EQ(outcome.exit, 4);
  EXPECT_EQ(outcome.err, "scriptwells: the answer of " + Origin() +
                             " broke off: the time that --max-time allows is over\n");
  EXPECT_EQ(Count(), 0);
}

// A script that keeps its server busy for longer than everything may take.
TEST_F(Download, SessionIsClosedWhenTheTimeForAllIsOver) {
  server_.Expect(test::RawScript().ReadRequest().Write(SessionOpened()).ReadRequest().Stall());
  Answer({SessionClosed()});
  const Outcome outcome = RunTool(AsJoe("run", {"-e", "1", "--max-time", "3"}));
  EXPECT_EQ(outcome.exit, 4);
  EXPECT_EQ(outcome.err,
            "scriptwells: no answer from " + Origin() + ": the time that --max-time allows is over\n");
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(Download, InterruptLeavesNoFileAndClosesTheSession) {
  server_.Expect(test::RawScript()
                     .ReadRequest()
                     .Write(SessionOpened())
                     .ReadRequest()
                     .Write(FileStart("out.txt", 1000000, "half"))
                     .Stall());
  Answer({SessionClosed()});
  Process process({"download", Url(), folder_.Path(), "--user", "joe"});
  ASSERT_TRUE(FileBegins());
  process.Signal(SIGINT);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: interrupted\n");
  EXPECT_EQ(Count(), 0);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

}  // namespace
}  // namespace qv::cli
