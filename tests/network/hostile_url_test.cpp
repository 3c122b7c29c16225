// Addresses that a server or a script gives, and what they must not make the client do.
#include <fstream>

#include "child_process.h"
#include "open_watch.h"
#include "qvscriptwells/create_objects.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

constexpr char kProblem[] = "0x80020009 Unknown Http problem.";
constexpr char kNoUrl[] = "0x80020009 Cannot parse url, expecting 'http://' after protocol name.";

class HostileUrl : public TransferTest {
 protected:
  // A download from `url` fails, opens nothing and sends nothing.
  void ExpectRefused(const std::string& url) {
    SCOPED_TRACE(url);
    const Tree before = AllFiles();
    const std::string received = server_.AllReceived();
    {
      const OpenWatch watch(secret_);
      ASSERT_TRUE(watch.IsReady());
      EXPECT_EQ(Download(url, Wide(Target())).substr(0, 10), "0x80004003");
      EXPECT_FALSE(watch.WasOpened());
    }
    EXPECT_EQ(server_.AllReceived(), received);
    EXPECT_EQ(AllFiles(), before);
    CloseKeptConnections();
    ExpectDownloadsLeaveNothing();
  }
  // The script's answer (escaped for XML) is `start` and one of these; it is no address: nothing is opened,
  // and nothing sent after the question for it.
  void ExpectNoUpload(const std::string& start, const Words& ends, const std::string& outcome = kProblem) {
    for (const std::string& end : ends) {
      SCOPED_TRACE(start + end);
      const OpenWatch secret(secret_);
      const OpenWatch attached(attached_);
      ASSERT_TRUE(secret.IsReady() && attached.IsReady());
      Reply(ScriptAnswer(start + end));
      EXPECT_EQ(RunWith(CreateAttachedFile(Wide(attached_))), outcome);
      EXPECT_FALSE(secret.WasOpened());
      EXPECT_FALSE(attached.WasOpened());
      CloseKeptConnections();
      ASSERT_TRUE(server_.WaitForClosed(server_.Connections()));
      const std::string sent = server_.AllReceived();
      EXPECT_EQ(sent.find("content"), std::string::npos);
      EXPECT_EQ(sent.find("POST /up"), std::string::npos);
      EXPECT_EQ(sent.find("Evil"), std::string::npos);
    }
  }

  const std::string secret_ = files_.Write("secret.txt", "secret");
  const std::string attached_ = files_.Write("here/f.bin", "content");
};

TEST_F(HostileUrl, WatchSeesAnOpenedFile) {
  const OpenWatch watch(secret_);
  ASSERT_TRUE(watch.IsReady());
  EXPECT_FALSE(watch.WasOpened());
  EXPECT_TRUE(std::ifstream(secret_).good());
  EXPECT_TRUE(watch.WasOpened());
}

TEST_F(HostileUrl, OnlyHttpIsADownload) {
  for (const char* start : {"file://", "FILE://", "file://localhost", "file://127.0.0.1"})
    ExpectRefused(start + secret_);
  for (const char* protocol : {"ftp", "scp", "gopher", "dict", "ldap", "smb", "telnet", "httpx", ""})
    ExpectRefused(protocol + ServerUrl().substr(4) + "/f");
}

TEST_F(HostileUrl, LineBreaksInADownloadUrlSendNothing) {
  for (const char* bad : {"\r\nEvil: 1", "\nEvil: 1", " HTTP/1.0", "\r\n\r\nGET /evil HTTP/1.1"})
    ExpectRefused(ServerUrl() + "/f" + bad);
}

TEST_F(HostileUrl, OnlyHttpIsAPlaceForAnUpload) {
  const std::string file = secret_ + "?ticket=T1";
  const std::string server = ServerUrl().substr(4) + "/up?ticket=T1";
  ExpectNoUpload("",
                 {"file://" + file, "FILE://" + file, "file://localhost" + file, "file://127.0.0.1" + file});
  EXPECT_EQ(files_.Read("secret.txt"), "secret");
  ExpectNoUpload("",
                 {"ftp" + server, "scp" + server, "tftp" + server, "httpx" + server, "http:///up?ticket=T1"});
  ExpectNoUpload("", {"no url", "/up?ticket=T1", "http://"}, kNoUrl);
  ExpectUploadsLeaveNothing();
}

TEST_F(HostileUrl, LineBreaksInAnUploadUrlSendNothing) {
  ExpectNoUpload(UploadUrl(), {"&#13;&#10;Evil: 1", "&#13;&#10;&#13;&#10;POST /up HTTP/1.1", "&#10;Evil: 1",
                               "&#13;", " Evil", "&#9;Evil"});
  ExpectNoUpload("http://",
                 {"127.0.0.1&#13;&#10;Evil: 1/up?ticket=T1", "user@" + server_.Address() + "/up?ticket=T1"});
  ExpectUploadsLeaveNothing();
}

// A session's id is sent with a transfer; it must not become more than one header.
TEST_F(HostileUrl, LineBreaksInTheSessionIdSendNothing) {
  const std::size_t before = server_.Connections();
  ASSERT_EQ(model_->SetUSID(u"s1\r\nEvil: 1"), S_OK);
  server_.Expect(RawScript().ReadRequest());
  EXPECT_EQ(DownloadHere(), "0x80020009 The value of a header holds CR, LF or NUL");
  CloseKeptConnections();
  ASSERT_TRUE(server_.WaitForClosed(before + 1));
  EXPECT_EQ(server_.Received().back(), "");
}

class Redirect : public TransferTest {
 protected:
  std::string Moved(const std::string& headers, const std::string& body) const {
    return "HTTP/1.1 302 Found\r\nLocation: " + elsewhere_.Url() + "/evil\r\n" + headers +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  }
  void TearDown() override { EXPECT_EQ(elsewhere_.Connections(), 0U); }

  RawServer elsewhere_;
};

TEST_F(Redirect, BodyIsReadLikeAnyOther) {
  Reply(Moved("", "moved"));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "StatusCode"), "302");
  EXPECT_EQ(ReadText(request, 5), "moved");
}

TEST_F(Redirect, DownloadThatNamesNoFileIsAnHttpProblem) {
  Reply(Moved("", "moved"));
  ExpectNoDownload(ServerUrl() + "/f", Wide(Target()), kProblem);
  ExpectNextDownloadWorks();
}

TEST_F(Redirect, DownloadThatNamesAFileGetsTheBodyOfTheRedirect) {
  Reply(Moved(FileHeader("f.txt"), "moved"));
  ExpectDownload("f.txt", "moved");
}

TEST_F(Redirect, ScriptIsAnsweredByTheBodyOfTheRedirect) {
  const std::string answer = ScriptAnswer("moved");
  Reply(Moved("", answer.substr(answer.find("\r\n\r\n") + 4)));
  Variant result;
  ASSERT_EQ(model_->Execute(u"JavaScript", u"1", nullptr, &result), S_OK);
  EXPECT_EQ(result.Text(), WideString(u"moved"));
}

TEST_F(Redirect, UploadDoesNotFollow) {
  server_.Expect(
      RawScript().Reply(ScriptAnswer(UploadUrl())).Reply(Moved("", "")).Reply(ScriptAnswer("done")));
  EXPECT_EQ(RunWith(File("content")), "VT_BSTR done");
}

}  // namespace
}  // namespace qv::test
