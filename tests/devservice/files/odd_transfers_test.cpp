// Transfers of files that a path asks for with /odd/NAME.
#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

class OddTransfers : public TransferTest {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.stallTime = std::chrono::milliseconds(600); });
  }
  // The answer of a script to a client whose server name ends with the odd form.
  std::string OddText(const std::string& name, const std::string& script) {
    return ValueIn(Run("/odd/" + name, script).body).substr(std::string("xsd:string|").size());
  }
  std::string OddUploadUrl(const std::string& name) { return OddText(name, "uploadUrl()"); }
  std::string OddFileUrl(const std::string& name) { return OddText(name, "publish('a.txt', '0123456789')"); }
  RawAnswer OddUpload(const std::string& name, const std::string& content) {
    return Upload(OddUploadUrl(name), content);
  }
  RawAnswer OddDownload(const std::string& name) { return Fetch(OddFileUrl(name)); }
};

TEST_F(OddTransfers, Addresses) {
  const std::string upload = OddUploadUrl("upload-drop");
  EXPECT_EQ(upload.substr(0, upload.size() - 32),
            "http://127.0.0.1:80/odd/upload-drop/WebEditor/FileManagerUpload.aspx?ticket=");
  EXPECT_EQ(OddFileUrl("download-cut").substr(0, 43), "http://127.0.0.1:80/odd/download-cut/files/");
  EXPECT_EQ(OddUploadUrl("url-file"), "file:///etc/passwd");
  const std::string url = OddUploadUrl("url-crlf");
  // In the answer the carriage return is a reference, which readers undo.
  EXPECT_EQ(url.substr(url.size() - 14), "&#13;\nX-Odd: 1");
  EXPECT_EQ(url.find("X-Odd"), url.find("ticket=") + 7 + 32 + 6);
}

TEST_F(OddTransfers, Uploads) {
  EXPECT_EQ(StatusOf(OddUpload("upload-refused", "abc")), "403");
  const RawAnswer dropped = OddUpload("upload-drop", std::string(500000, 'a'));
  EXPECT_TRUE(dropped.closed);
  EXPECT_EQ(dropped.head, "");
  EXPECT_EQ(OddUpload("upload-drop", "").head, "");
  RawClient client(Port(), UploadHead(PathIn(OddUploadUrl("upload-stall")), 4) + "ab");
  EXPECT_TRUE(client.Receive(std::chrono::milliseconds(200)).timedOut);
  const RawAnswer stalled = client.Receive();
  EXPECT_TRUE(stalled.closed);
  EXPECT_EQ(stalled.head, "");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(OddTransfers, DownloadsThatAreNotWhatTheyAnnounce) {
  constexpr const char* kRows[][3] = {
      {"download-cut", "10", "01234"},
      {"download-short", "10", "012345678"},
      {"download-no-length", "(none)", "0123456789"},
  };
  for (const auto& [name, length, body] : kRows) {
    const RawAnswer answer = OddDownload(name);
    EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), length) << name;
    EXPECT_EQ(answer.body, body) << name;
    EXPECT_TRUE(answer.closed) << name;
  }
  EXPECT_EQ(Stats()["downloadedBytes"], 5 + 9 + 10);

  RawClient client(Port(), FileRequest("GET " + PathIn(OddFileUrl("download-long"))));
  std::string bytes;
  for (RawAnswer answer; !answer.closed; bytes += answer.head + answer.body) answer = client.Receive();
  EXPECT_TRUE(Contains(bytes, "Content-Length: 10\r\n"));
  EXPECT_TRUE(Contains(bytes, "\r\n\r\n0123456789"));
}

TEST_F(OddTransfers, DownloadStallIsSilentAfterHalf) {
  RawClient client(Port(), FileRequest("GET " + PathIn(OddFileUrl("download-stall"))));
  const RawAnswer first = client.Receive(std::chrono::milliseconds(300));
  EXPECT_TRUE(first.timedOut);
  EXPECT_EQ(first.body, "01234");
  EXPECT_TRUE(client.Receive().closed);
}

TEST_F(OddTransfers, DownloadNames) {
  const std::string start = "attachment; filename=";
  const std::pair<const char*, std::string> rows[] = {
      {"download-no-name", "(none)"},
      {"download-name-dotdot", start + ".."},
      {"download-name-dot", start + "."},
      {"download-name-slash", start + "a/b"},
      {"download-name-backslash", start + "a\\b"},
      {"download-name-empty", start},
      {"download-name-nul", start + std::string("a\0b", 3)},
  };
  for (const auto& [name, disposition] : rows) {
    const RawAnswer answer = OddDownload(name);
    EXPECT_EQ(HeaderOf(answer.head, "Content-Disposition"), disposition) << name;
    EXPECT_EQ(answer.body, "0123456789") << name;
  }
}

TEST_F(OddTransfers, RedirectNamesAnotherHost) {
  for (const RawAnswer& answer : {OddUpload("url-redirect", "abc"), OddDownload("url-redirect")}) {
    EXPECT_EQ(StatusOf(answer), "302");
    EXPECT_EQ(HeaderOf(answer.head, "Location"), "http://elsewhere.quorvane.example/");
  }
}

TEST_F(OddTransfers, UnknownNameIsRefusedWithTheNames) {
  EXPECT_EQ(StatusOf(Upload("http://x/odd/wrong" + PathIn(NewUploadUrl()), "a")), "404");
  const RawAnswer answer = Fetch("http://x/odd/wrong" + PathIn(Text("publish('a', 'b')")));
  EXPECT_EQ(StatusOf(answer), "404");
  EXPECT_TRUE(Contains(answer.body, "upload-refused, upload-drop, upload-stall, download-cut, "));
}

TEST_F(OddTransfers, StopEndsStallsAtOnce) {
  StartWith([](ServiceOptions& options) { options.stallTime = std::chrono::seconds(100); });
  RawClient upload(Port(), UploadHead(PathIn(OddUploadUrl("upload-stall")), 4) + "abcd");
  RawClient download(Port(), FileRequest("GET " + PathIn(OddFileUrl("download-stall"))));
  EXPECT_TRUE(upload.Receive(std::chrono::milliseconds(300)).timedOut);
  EXPECT_TRUE(download.Receive(std::chrono::milliseconds(300)).timedOut);
  StopAtOnce();
}

}  // namespace
}  // namespace qv::devservice::testing
