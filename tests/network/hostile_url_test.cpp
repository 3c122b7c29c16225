// Addresses that a server or a script gives, and what they must not make the client do.
#include <fstream>

#include "open_watch.h"
#include "qvscriptwells/create_objects.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

constexpr char kProblem[] = "0x80020009 Unknown Http problem.";
constexpr char kNoUrl[] = "0x80020009 Cannot parse url, expecting 'http://' after protocol name.";

class HostileUrl : public TransferTest {
 protected:
  HostileUrl()
      : secret_(files_.Write("secret.txt", "secret")), attached_(files_.Write("here/f.bin", "content")) {}

  // A download from `url` fails, opens nothing and sends nothing.
  void ExpectNoDownload(const std::string& url, const std::string& outcome) {
    const Tree before = AllFiles();
    const std::string received = server_.AllReceived();
    {
      const OpenWatch watch(secret_);
      ASSERT_TRUE(watch.IsReady());
      EXPECT_EQ(Download(url, Wide(Target())).substr(0, outcome.size()), outcome) << url;
      EXPECT_FALSE(watch.WasOpened()) << url;
    }
    EXPECT_EQ(server_.AllReceived(), received) << url;
    EXPECT_EQ(AllFiles(), before) << url;
    CloseKeptConnections();
    ExpectNextDownloadWorks();
    ExpectNoDescriptorLeft();
  }
  // The script's answer `url` (escaped for XML) is no address: nothing is opened, and nothing sent after the
  // question for it.
  void ExpectNoUpload(const std::string& url, const std::string& outcome) {
    const OpenWatch secret(secret_);
    const OpenWatch attached(attached_);
    ASSERT_TRUE(secret.IsReady() && attached.IsReady());
    server_.Expect(RawScript().ReadRequest().Write(ScriptAnswer(url)));
    EXPECT_EQ(RunWith(CreateAttachedFile(Wide(attached_))), outcome) << url;
    EXPECT_FALSE(secret.WasOpened()) << url;
    EXPECT_FALSE(attached.WasOpened()) << url;
    CloseKeptConnections();
    ASSERT_TRUE(server_.WaitForClosed(server_.Connections()));
    const std::string sent = server_.AllReceived();
    EXPECT_EQ(sent.find("content"), std::string::npos) << url;
    EXPECT_EQ(sent.find("POST /up"), std::string::npos) << url;
    EXPECT_EQ(sent.find("Evil"), std::string::npos) << url;
  }

  std::string secret_;
  std::string attached_;
};

TEST_F(HostileUrl, WatchSeesAnOpenedFile) {
  const OpenWatch watch(secret_);
  ASSERT_TRUE(watch.IsReady());
  EXPECT_FALSE(watch.WasOpened());
  EXPECT_TRUE(std::ifstream(secret_).good());
  EXPECT_TRUE(watch.WasOpened());
}

TEST_F(HostileUrl, FileIsNoDownload) {
  for (const char* start : {"file://", "FILE://", "file://localhost", "file://127.0.0.1"})
    ExpectNoDownload(start + secret_, "0x80004003");
}

TEST_F(HostileUrl, OtherProtocolsAreNoDownload) {
  for (const char* protocol : {"ftp", "scp", "gopher", "dict", "ldap", "smb", "telnet", "httpx", ""})
    ExpectNoDownload(protocol + ServerUrl().substr(4) + "/f", "0x80004003");
}

TEST_F(HostileUrl, FileIsNoPlaceForAnUpload) {
  for (const char* start : {"file://", "FILE://", "file://localhost", "file://127.0.0.1"})
    ExpectNoUpload(start + secret_ + "?ticket=T1", kProblem);
  EXPECT_EQ(files_.Read("secret.txt"), "secret");
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(HostileUrl, OtherProtocolsAreNoPlaceForAnUpload) {
  for (const char* protocol : {"ftp", "scp", "tftp", "httpx"})
    ExpectNoUpload(protocol + ServerUrl().substr(4) + "/up?ticket=T1", kProblem);
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(HostileUrl, TextThatIsNoUrlIsNoPlaceForAnUpload) {
  ExpectNoUpload("no url", kNoUrl);
  ExpectNoUpload("/up?ticket=T1", kNoUrl);
  ExpectNoUpload("http://", kNoUrl);
  ExpectNoUpload("http:///up?ticket=T1", kProblem);
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(HostileUrl, LineBreaksInAnUploadUrlSendNothing) {
  for (const char* bad : {"&#13;&#10;Evil: 1", "&#13;&#10;&#13;&#10;POST /up HTTP/1.1", "&#10;Evil: 1",
                          "&#13;", " Evil", "&#9;Evil"})
    ExpectNoUpload(ServerUrl() + "/up?ticket=T1" + bad, kProblem);
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(HostileUrl, LineBreaksInTheHostOfAnUploadSendNothing) {
  ExpectNoUpload("http://127.0.0.1&#13;&#10;Evil: 1/up?ticket=T1", kProblem);
  ExpectNoUpload("http://user@127.0.0.1:" + std::to_string(server_.Port()) + "/up?ticket=T1", kProblem);
  ExpectNextUploadWorks();
}

TEST_F(HostileUrl, LineBreaksInADownloadUrlSendNothing) {
  for (const char* bad : {"\r\nEvil: 1", "\nEvil: 1", " HTTP/1.0", "\r\n\r\nGET /evil HTTP/1.1"})
    ExpectNoDownload(ServerUrl() + "/f" + bad, "0x80004003");
}

// A session's id goes along with a transfer; it must not become more than one header.
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
    return "HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:" + std::to_string(elsewhere_.Port()) +
           "/evil\r\n" + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  }
  void TearDown() override { EXPECT_EQ(elsewhere_.Connections(), 0u); }

  RawServer elsewhere_;
};

TEST_F(Redirect, BodyIsReadLikeAnyOther) {
  server_.Expect(RawScript().ReadRequest().Write(Moved("", "moved")));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "StatusCode"), "302");
  EXPECT_EQ(ReadText(request, 5), WideString(u"moved"));
}

TEST_F(Redirect, DownloadThatNamesNoFileIsAnHttpProblem) {
  const Tree before = AllFiles();
  server_.Expect(RawScript().ReadRequest().Write(Moved("", "moved")));
  EXPECT_EQ(DownloadHere(), kProblem);
  EXPECT_EQ(AllFiles(), before);
  ExpectNextDownloadWorks();
}

TEST_F(Redirect, DownloadThatNamesAFileGetsTheBodyOfTheRedirect) {
  server_.Expect(
      RawScript().ReadRequest().Write(Moved("Content-Disposition: attachment; filename=f.txt\r\n", "moved")));
  EXPECT_EQ(DownloadHere(), "ok");
  EXPECT_EQ(files_.Read("target/f.txt"), "moved");
}

TEST_F(Redirect, ScriptIsAnsweredByTheBodyOfTheRedirect) {
  const std::string answer = ScriptAnswer("moved");
  server_.Expect(RawScript().ReadRequest().Write(Moved("", answer.substr(answer.find("\r\n\r\n") + 4))));
  Variant result;
  ASSERT_EQ(model_->Execute(u"JavaScript", u"1", nullptr, &result), S_OK);
  EXPECT_EQ(result.Text(), WideString(u"moved"));
}

TEST_F(Redirect, UploadDoesNotFollow) {
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Write(ScriptAnswer(ServerUrl() + "/up?ticket=T1"))
                     .ReadRequest()
                     .Write(Moved("", ""))
                     .ReadRequest()
                     .Write(ScriptAnswer("done")));
  EXPECT_EQ(RunWith(CreateAttachedFile(Wide(files_.Write("here/f.bin", "content")))), "VT_BSTR done");
}

}  // namespace
}  // namespace qv::test
