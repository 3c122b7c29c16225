// `scriptwells download`: files that are saved, names that are rejected, and transfers that break.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;
using test::RawScript;

class DownloadCommandTest : public TransferServer {
 protected:
  // A download in an open session, of a file with this name.
  Tool Fetch(const std::string& name, const std::string& options = "") {
    Answer({FileAnswer(name, "text")});
    return Adopted(options);
  }
  // Waits until there is a file in the directory.
  bool FileBegins() const {
    for (int i = 0; i < 400 && folder_.Count() == 0; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(25));
    return folder_.Count() == 1;
  }
  std::string NotUnderstood(const std::string& rest) const {
    return "answer not understood: the answer of " + Origin() + rest;
  }
  std::string Named(const std::string& name, const std::string& reason) const {
    return NotUnderstood(" names the file '" + name + "', which is refused: " + reason);
  }

  std::string out_ = folder_.Path("out.txt");
};

TEST_F(DownloadCommandTest, UsesAnOpenSessionAndNothingElse) {
  Fetch("out.txt").Succeeds(out_ + "\n");
  EXPECT_EQ(folder_.Read("out.txt"), "text");
  EXPECT_TRUE(WasSent("GET /f?t=1 HTTP/1.1\r\n"));
  EXPECT_TRUE(WasSent("\r\nusid: abc\r\n"));
  EXPECT_FALSE(WasSent("POST"));
  EXPECT_EQ(server_.Connections(), 1U);
  Fetch("=a.txt").Succeeds(folder_.Path("=a.txt\n"));
  Fetch("out.txt", "--json --force").Succeeds(R"({"path":")" + out_ + "\",\"bytes\":4}\n");
}

TEST_F(DownloadCommandTest, OpensAndClosesASessionOnTheServerOfTheUrl) {
  AnswerCalls({FileAnswer("out.txt", "")});
  Download().Succeeds(out_ + "\n");
  EXPECT_TRUE(WasSent("#CreateUserSession\r\n"));
  EXPECT_TRUE(WasSent("\r\nusid: u1\r\n"));
  EXPECT_TRUE(WasClosed());
}

TEST_F(DownloadCommandTest, ReplacesAFileOnRequestOnly) {
  folder_.Write("out.txt", "something longer");
  const std::string message =
      "the download failed: Couldn't write file " + out_ + ": File exists (--force replaces it)";
  Fetch("out.txt").Fails(6, message);
  EXPECT_EQ(Fetch("out.txt", "--json").Run().err,
            "{\"error\":{\"kind\":\"file exists\",\"message\":\"" + message + "\",\"exit\":6}}\n");
  EXPECT_EQ(folder_.Read("out.txt"), "something longer");
  EXPECT_EQ(folder_.Count(), 1);
  EXPECT_EQ(Fetch("out.txt", "--force").Run().exit, 0);
  EXPECT_EQ(folder_.Read("out.txt"), "text");
}

TEST_F(DownloadCommandTest, KeepsALinkThatLeadsNowhere) {
  std::filesystem::create_symlink("nowhere", out_);
  EXPECT_EQ(Fetch("out.txt").Run().exit, 6);
  EXPECT_TRUE(std::filesystem::is_symlink(out_));
}

TEST_F(DownloadCommandTest, KeepsAFileThatAppearsMeanwhile) {
  server_.Expect(RawScript().ReadRequest().Write(FileStart("out.txt", 8, "half")).Pause(1000).Write("half"));
  Process process(Adopted());
  ASSERT_TRUE(FileBegins());
  folder_.Write("out.txt", "theirs");
  EXPECT_EQ(process.Finish().exit, 6);
  EXPECT_EQ(folder_.Read("out.txt"), "theirs");
  EXPECT_EQ(folder_.Count(), 1);
}

TEST_F(DownloadCommandTest, RejectsNames) {
  EXPECT_EQ(Fetch("a\x1b[2J", "--force").Run().exit, 7);
  for (const std::string name : {"../x", "..", "a\\b", "/etc/x", ""})
    Fetch(name).Fails(7, Named(name, "it would not stay in the directory"));
  // The library reads no name in these.
  for (const char* header : {"Content-Disposition: =a.txt\r\n", ""}) {
    Answer({test::RawAnswerText("text", header)});
    Adopted().Fails(7, NotUnderstood(" names no file"));
  }
  EXPECT_EQ(folder_.Count(), 0);
  Fetch(".bashrc").Fails(7, Named(".bashrc", "it begins with '.' (--force saves it)"));
  EXPECT_EQ(folder_.Count(), 0);
  EXPECT_EQ(Fetch(".bashrc", "--force").Run().out, folder_.Path(".bashrc\n"));
  EXPECT_EQ(folder_.Read(".bashrc"), "text");
}

TEST_F(DownloadCommandTest, DoesNotSaveAnErrorPage) {
  AnswerCalls({StatusAnswer("404 Not Found")});
  Download().Fails(
      1, Origin() +
             " answered the download with the status 404 (a file of another session is fetched with "
             "that session's id, --usid, or by run --save)");
  EXPECT_TRUE(WasClosed());
  Answer({"HTTP/1.1 500 X\r\nContent-Disposition: a; filename=page\r\nContent-Length: 4\r\n\r\noops"});
  Adopted("--json").Fails(1, R"({"error":{"kind":"download refused","message":")" + Origin() +
                                 R"( answered the download with the status 500","exit":1}})");
  EXPECT_EQ(folder_.Count(), 0);
}

TEST_F(DownloadCommandTest, ReportsWhatItCannotUse) {
  Tool("download " + Url() + " /nonexistent/d --usid abc")
      .Fails(6, "cannot save into /nonexistent/d: No such file or directory");
  Tool("download out.txt " + folder_.Path() + " --usid abc")
      .Fails(6, "URL 'out.txt' does not begin with http:// or https://");
  Tool("download " + Url() + " " + folder_.Path() + " --usid", {"a\r\nX: y"})
      .Fails(6, "the session's id holds a character that no header carries");
  EXPECT_EQ(server_.Connections(), 0U);
  Tool("download http://127.0.0.1:1/f " + folder_.Path() + " --usid abc")
      .FailsLike(3, "cannot reach http://127.0.0.1:1: ");
  std::filesystem::create_directory(out_);
  Fetch("out.txt").Fails(6, "the download failed: Couldn't write file " + out_ + ": Is a directory");
}

TEST_F(DownloadCommandTest, BrokenTransferLeavesNothing) {
  const std::string brokeOff = "the answer of " + Origin() + " broke off: ";
  server_.Expect(RawScript().ReadRequest().Write(FileStart("out.txt", 100, "half")).Close());
  Adopted().FailsLike(3, brokeOff);
  server_.Expect(RawScript().ReadRequest().Write(FileStart("out.txt", 100, "half")).Stall());
  EXPECT_EQ(Adopted("--timeout 0.3").Run().exit, 4);
  RawScript drip;
  drip.ReadRequest().Write(FileStart("out.txt", 100000, "half"));
  for (int i = 0; i < 1000; ++i) drip.Write("x").Pause(20);
  server_.Expect(drip);
  Adopted("--max-time 500ms").Fails(4, brokeOff + "the time that --max-time allows is over");
  EXPECT_EQ(folder_.Count(), 0);
}

// A script that keeps its server busy for too long.
TEST_F(DownloadCommandTest, SessionIsClosedWhenTheTotalTimeIsOver) {
  server_.Expect(RawScript().ReadRequest().Write(SessionOpened()).ReadRequest().Stall());
  Answer({SessionClosed()});
  Joe("run -e 1 --max-time 3")
      .Fails(4, "no answer from " + Origin() + ": the time that --max-time allows is over");
  EXPECT_TRUE(WasClosed());
}

TEST_F(DownloadCommandTest, InterruptLeavesNoFileAndClosesTheSession) {
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Write(SessionOpened())
                     .ReadRequest()
                     .Write(FileStart("out.txt", 1000000, "half"))
                     .Stall());
  Answer({SessionClosed()});
  Process process(Download());
  ASSERT_TRUE(FileBegins());
  process.Signal(SIGINT);
  process.Finish().Fails(130, "interrupted");
  EXPECT_EQ(folder_.Count(), 0);
  EXPECT_TRUE(WasClosed());
}

}  // namespace
}  // namespace qv::cli
