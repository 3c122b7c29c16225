#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

class OddTransfers : public TransferTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.stallTime = std::chrono::milliseconds(600);
    StartWith(options);
    session_ = Login();
  }
  // What a script answers to a client whose server name ends with the odd form.
  std::string OddText(const std::string& name, const std::string& script) {
    const std::string body =
        Post("/odd/" + name, "Execute", ExecuteEnvelope(session_, script, NilParameters())).body;
    return ValueIn(body).substr(std::string("xsd:string|").size());
  }
  RawAnswer OddUpload(const std::string& name, const std::string& content) {
    return Upload(OddText(name, "uploadUrl()"), content);
  }
  RawAnswer OddDownload(const std::string& name) {
    return Fetch(OddText(name, "publish('a.txt', '0123456789')"));
  }
};

TEST_F(OddTransfers, AddressesKeepThePrefix) {
  const std::string url = OddText("upload-drop", "uploadUrl()");
  EXPECT_EQ(url.substr(0, url.size() - 32),
            "http://127.0.0.1:80/odd/upload-drop/WebEditor/FileManagerUpload.aspx?ticket=");
  EXPECT_EQ(OddText("download-cut", "publish('a', 'b')").substr(0, 43),
            "http://127.0.0.1:80/odd/download-cut/files/");
}

TEST_F(OddTransfers, UploadRefused) {
  EXPECT_EQ(StatusOf(OddUpload("upload-refused", "abc")), "403");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(OddTransfers, UploadDropClosesWhileTheBodyIsRead) {
  const RawAnswer answer = OddUpload("upload-drop", std::string(500000, 'a'));
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(answer.head, "");
  EXPECT_EQ(OddUpload("upload-drop", "").head, "");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(OddTransfers, UploadStallIsSilentAndCloses) {
  const std::string url = OddText("upload-stall", "uploadUrl()");
  RawClient client(service_->Port());
  client.Send(UploadHead(PathIn(url), session_, 4) + "ab");
  EXPECT_TRUE(client.Receive(std::chrono::milliseconds(200)).timedOut);
  const RawAnswer answer = client.Receive();
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(answer.head, "");
}

TEST_F(OddTransfers, DownloadCutSendsHalf) {
  const RawAnswer answer = OddDownload("download-cut");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "10");
  EXPECT_EQ(answer.body, "01234");
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(Stats()["downloadedBytes"], 5);
}

TEST_F(OddTransfers, DownloadShortLacksAByte) {
  const RawAnswer answer = OddDownload("download-short");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "10");
  EXPECT_EQ(answer.body, "012345678");
  EXPECT_TRUE(answer.closed);
}

TEST_F(OddTransfers, DownloadLongHasMoreThanAnnounced) {
  const std::string url = OddText("download-long", "publish('a.txt', '0123456789')");
  RawClient client(service_->Port());
  client.Send("GET " + PathIn(url) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  std::string bytes;
  for (RawAnswer answer; !answer.closed; bytes += answer.head + answer.body) answer = client.Receive();
  EXPECT_NE(bytes.find("Content-Length: 10\r\n"), std::string::npos);
  EXPECT_NE(bytes.find("\r\n\r\n0123456789"), std::string::npos);
}

TEST_F(OddTransfers, DownloadStallHoldsStillAfterHalf) {
  const std::string url = OddText("download-stall", "publish('a.txt', '0123456789')");
  RawClient client(service_->Port());
  client.Send("GET " + PathIn(url) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  const RawAnswer first = client.Receive(std::chrono::milliseconds(300));
  EXPECT_TRUE(first.timedOut);
  EXPECT_EQ(first.body, "01234");
  EXPECT_TRUE(client.Receive().closed);
}

TEST_F(OddTransfers, DownloadWithoutLengthEndsWithTheConnection) {
  const RawAnswer answer = OddDownload("download-no-length");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "(none)");
  EXPECT_EQ(answer.body, "0123456789");
  EXPECT_TRUE(answer.closed);
}

TEST_F(OddTransfers, DownloadWithoutName) {
  const RawAnswer answer = OddDownload("download-no-name");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Disposition"), "(none)");
  EXPECT_EQ(answer.body, "0123456789");
}

TEST_F(OddTransfers, DownloadNames) {
  const std::pair<const char*, std::string> rows[] = {
      {"download-name-dotdot", ".."}, {"download-name-dot", "."},
      {"download-name-slash", "a/b"}, {"download-name-backslash", "a\\b"},
      {"download-name-empty", ""},    {"download-name-nul", std::string("a\0b", 3)},
  };
  for (const auto& [name, expected] : rows) {
    const RawAnswer answer = OddDownload(name);
    EXPECT_EQ(HeaderOf(answer.head, "Content-Disposition"), "attachment; filename=" + expected) << name;
    EXPECT_EQ(answer.body, "0123456789") << name;
  }
}

TEST_F(OddTransfers, UploadAddresses) {
  EXPECT_EQ(OddText("url-file", "uploadUrl()"), "file:///etc/passwd");
  const std::string url = OddText("url-crlf", "uploadUrl()");
  // In the answer the carriage return is a reference, which readers undo.
  EXPECT_EQ(url.substr(url.size() - 14), "&#13;\nX-Odd: 1");
  EXPECT_EQ(url.find("X-Odd"), url.find("ticket=") + 7 + 32 + 6);
}

TEST_F(OddTransfers, RedirectNamesAnotherHost) {
  for (const RawAnswer& answer : {OddUpload("url-redirect", "abc"), OddDownload("url-redirect")}) {
    EXPECT_EQ(StatusOf(answer), "302");
    EXPECT_EQ(HeaderOf(answer.head, "Location"), "http://elsewhere.quorvane.example/");
  }
}

TEST_F(OddTransfers, UnknownNameIsRefusedWithTheNames) {
  const std::string upload = PathIn(NewUploadUrl());
  const std::string file = PathIn(Text("publish('a', 'b')"));
  EXPECT_EQ(StatusOf(Upload("http://x/odd/wrong" + upload, "a")), "404");
  const RawAnswer answer = Fetch("http://x/odd/wrong" + file);
  EXPECT_EQ(StatusOf(answer), "404");
  EXPECT_NE(answer.body.find("upload-refused, upload-drop, upload-stall, download-cut, "), std::string::npos);
}

TEST_F(OddTransfers, StopEndsStallsAtOnce) {
  ServiceOptions options = TestOptions();
  options.stallTime = std::chrono::seconds(100);
  StartWith(options);
  session_ = Login();
  RawClient upload(service_->Port());
  upload.Send(UploadHead(PathIn(OddText("upload-stall", "uploadUrl()")), session_, 4) + "abcd");
  RawClient download(service_->Port());
  download.Send("GET " + PathIn(OddText("download-stall", "publish('a', 'text')")) +
                " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  EXPECT_TRUE(upload.Receive(std::chrono::milliseconds(300)).timedOut);
  EXPECT_TRUE(download.Receive(std::chrono::milliseconds(300)).timedOut);
  const auto start = Clock::now();
  service_->Stop();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
}

}  // namespace
}  // namespace qv::devservice::testing
