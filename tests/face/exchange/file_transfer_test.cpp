// Uploads and downloads: their failures, rejected names, and the home directory of the call.
#include "support/path_helpers.h"
#include "tests/face/exchange/call_fixture.h"

namespace scriptwells::test {
namespace {

using qv::test::RawScript;

class FileTransfer : public CallTest {
 protected:
  std::string Url() const { return server_.Url() + "/f?t=1"; }
  std::string UploadUrl() const { return server_.Url() + "/up?ticket=T1"; }
  std::string Saved(const std::string& name) const { return folder_.Read(name); }
};

TEST_F(FileTransfer, DownloadedFileIsSaved) {
  Answer({FileAnswer("a.txt", "content")});
  EXPECT_EQ(Download(Url()).shown, "ok");
  EXPECT_EQ(Saved("a.txt"), "content");
}

// The connection closes with each body that is not read.
TEST_F(FileTransfer, ErrorPageIsNotSaved) {
  Answer(
      {"HTTP/1.1 404 Not Found\r\nContent-Disposition: attachment; filename=a.txt\r\nContent-Length: "
       "4\r\n\r\npage"});
  Answer({StatusAnswer("403 Forbidden")});
  Outcome outcome = Download(Url());
  EXPECT_EQ(outcome.shown, "Error answer: " + server_.Url() + " answered the download with the status 404");
  EXPECT_EQ(outcome.details.status, 404);
  EXPECT_EQ(outcome.details.remedy, Remedy::kOtherSession);
  outcome = Download(Url());
  EXPECT_EQ(outcome.details.status, 403);
  EXPECT_EQ(folder_.Count(), 0);
}

TEST_F(FileTransfer, NamesThatAreRefused) {
  const std::string start = "Error answer: the answer of " + server_.Url() + " names ";
  const std::pair<const char*, const char*> rows[] = {{".bashrc", "it begins with '.'"},
                                                      {"a\x1b[2J", "it holds a control character"},
                                                      {"../a", "it would not stay in the directory"}};
  for (const auto& [name, reason] : rows) {
    Answer({FileAnswer(name, "x")});
    const Outcome outcome = Download(Url());
    EXPECT_EQ(outcome.shown, start + "the file '" + name + "', which is refused: " + reason);
    EXPECT_EQ(outcome.details.remedy, name[1] == 'b' ? Remedy::kHiddenFiles : Remedy::kNone);
  }
  Answer({StatusAnswer("200 OK", "x")});
  EXPECT_EQ(Download(Url()).shown, start + "no file");
  EXPECT_EQ(folder_.Count(), 0);
}

TEST_F(FileTransfer, HiddenFileIsSavedOnRequest) {
  settings_.hiddenFiles = true;
  Answer({FileAnswer(".bashrc", "x")});
  EXPECT_EQ(Download(Url()).shown, "ok");
  EXPECT_EQ(Saved(".bashrc"), "x");
}

TEST_F(FileTransfer, FileThatIsThere) {
  folder_.Write("a.txt", "old");
  settings_.http.replaceFiles = false;
  Answer({FileAnswer("a.txt", "new")});
  const Outcome outcome = Download(Url());
  EXPECT_EQ(outcome.shown.substr(0, 45), "Error local file: the download failed: Couldn");
  EXPECT_EQ(outcome.details.remedy, Remedy::kReplaceFiles);
  EXPECT_EQ(Saved("a.txt"), "old");
}

TEST_F(FileTransfer, DownloadThatBreaksOff) {
  server_.Expect(
      RawScript()
          .Reply("HTTP/1.1 200 OK\r\nContent-Disposition: a; filename=a.txt\r\nContent-Length: 9\r\n\r\nab")
          .Close());
  EXPECT_EQ(Download(Url()).shown, "ConnectionError receive: the answer of " + server_.Url() +
                                       " broke off: transfer closed with 7 bytes remaining to read");
  EXPECT_EQ(folder_.Count(), 0);
}

TEST_F(FileTransfer, UploadUsesTheHomeDirectoryOfTheCall) {
  const qv::WideString before = qv::GetHomeDirectory();
  MakeHome();
  const std::string file = folder_.Write("a.txt", "content");
  Answer({ScriptAnswer(UploadUrl()), StatusAnswer("200 OK"), ScriptAnswer("done")});
  EXPECT_EQ(Run({file}).shown, "ok");
  EXPECT_NE(server_.AllReceived().find("upload()"), std::string::npos);
  EXPECT_NE(server_.AllReceived().find("\r\n\r\ncontent"), std::string::npos);
  EXPECT_EQ(qv::GetHomeDirectory(), before);
}

TEST_F(FileTransfer, FileThatIsGone) {
  MakeHome();
  const std::string file = folder_.Path("none");
  Answer({ScriptAnswer(UploadUrl())});
  EXPECT_EQ(Run({file}).shown, "Error local file: the upload failed: Couldn't open file " + file +
                                   ": No such file or directory");
}

TEST_F(FileTransfer, UploadServerThatCannotBeReached) {
  MakeHome();
  std::string gone;
  {
    const qv::test::RawServer other;
    gone = other.Url();
  }
  Answer({ScriptAnswer(gone + "/up?ticket=T1")});
  const Outcome outcome = Run({folder_.Write("a.txt", "x")});
  EXPECT_EQ(outcome.shown.substr(0, 41 + gone.size()),
            "ConnectionError connect: cannot reach " + gone + ": F");
  // The server of the session is there.
  EXPECT_FALSE(couldNotConnect_);
}

TEST_F(FileTransfer, RefusedUploadIsToldWithTheFault) {
  MakeHome();
  const std::string file = folder_.Write("a.txt", "x");
  Answer({ScriptAnswer(UploadUrl()), StatusAnswer("403 Forbidden"),
          FaultAnswer("<errorCode>1017</errorCode><description>no such file</description>")});
  const Outcome outcome = Run({file});
  EXPECT_EQ(outcome.shown, "ScriptError script: no such file");
  EXPECT_EQ(outcome.details.transport,
            server_.Url() + " answered the upload of " + file + " with the status 403");
}

TEST_F(FileTransfer, AddressThatIsNone) {
  MakeHome();
  Answer({ScriptAnswer("nowhere")});
  EXPECT_EQ(
      Run({folder_.Write("a.txt", "x")}).shown,
      "Error answer: Cannot parse url, expecting 'http://' after protocol name. (the server's upload script "
      "gave no address to upload to)");
}

// The second of the three exchanges takes what was left by the first.
TEST_F(FileTransfer, TotalTimeIsThatOfAllExchanges) {
  MakeHome();
  settings_.http.totalTimeout = 600;
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Pause(400)
                     .Write(ScriptAnswer(UploadUrl()))
                     .ReadRequest()
                     .Pause(400)
                     .Write(StatusAnswer("200 OK"))
                     .ReadRequest()
                     .Write(ScriptAnswer("late")));
  const Outcome outcome = Run({folder_.Write("a.txt", "x")});
  EXPECT_EQ(outcome.shown, "TimeoutError wait: no answer from " + server_.Url() +
                               ": the time that the call may take is over");
  EXPECT_EQ(server_.AllReceived().find("done"), std::string::npos);
}

}  // namespace
}  // namespace scriptwells::test
