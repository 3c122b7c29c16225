#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

class Downloads : public TransferTest {
 protected:
  // What a client gets of a published content.
  std::string Content(const std::string& content, const std::string& parameters = NilParameters()) {
    const RawAnswer answer = Fetch(Text("publish('a.txt', " + content + ")", parameters));
    EXPECT_EQ(StatusOf(answer), "200") << content;
    return answer.body;
  }
};

TEST_F(Downloads, AnswerHasLengthTypeAndName) {
  const std::string url = Text("publish('a b.txt', 'text')");
  EXPECT_EQ(url.substr(0, 26), "http://127.0.0.1:80/files/");
  EXPECT_EQ(url.size(), 26 + 32 + 1u);
  const RawAnswer answer = Fetch(url);
  EXPECT_EQ(answer.head,
            "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\n"
            "Content-Disposition: attachment; filename=a b.txt\r\nConnection: Keep-Alive\r\n"
            "Content-Length: 4\r\n\r\n");
  EXPECT_EQ(answer.body, "text");
}

TEST_F(Downloads, HeadHasNoBodyAndKeepsTheConnection) {
  const std::string path = PathIn(Text("publish('a', 'text')"));
  RawClient client(service_->Port());
  for (int i = 0; i < 3; ++i) {
    client.Send("HEAD " + path + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
    const RawAnswer answer = client.Receive(std::chrono::milliseconds(300));
    EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "4");
    EXPECT_EQ(HeaderOf(answer.head, "Content-Disposition"), "attachment; filename=a");
    EXPECT_EQ(answer.body, "");
    EXPECT_FALSE(answer.closed);
  }
  client.Send("GET " + path + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  EXPECT_EQ(client.Receive().body, "text");
}

TEST_F(Downloads, TextGoesOutAsUtf8) {
  EXPECT_EQ(Content("'\xC3\xA9\xF0\x9F\x98\x80'"), "\xC3\xA9\xF0\x9F\x98\x80");
  EXPECT_EQ(Content("'a\\ud800b'"),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(Content("'a\\0b'"), std::string("a\0b", 3));
  EXPECT_EQ(Content("''"), "");
}

TEST_F(Downloads, BytesGoOutAsTheyAre) {
  EXPECT_EQ(Content("new Uint8Array([0, 255, 10])"), std::string("\0\xFF\n", 3));
  EXPECT_EQ(Content("new Uint8Array([1, 2, 65, 66, 3]).subarray(2, 4)"), "AB");
  EXPECT_EQ(Content("new Uint8Array([65, 66]).buffer"), "AB");
  EXPECT_EQ(Content("new Uint8ClampedArray([65])"), "A");
  EXPECT_EQ(Content("new Uint8Array(0)"), "");
  EXPECT_EQ(Content("new ArrayBuffer(0)"), "");
}

TEST_F(Downloads, ContentsGoUpTo64Megabytes) {
  ServiceOptions options = TestOptions();
  options.scriptMemoryLimit = std::size_t{4} << 30;
  options.scriptTimeLimit = std::chrono::seconds(60);
  StartWith(options);
  session_ = Login();
  const std::string path = PathIn(Text("publish('a', 'x'.repeat(64 << 20))"));
  RawClient client(service_->Port());
  client.Send("GET " + path + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  EXPECT_EQ(client.Drain().bytes, std::size_t{64} << 20);
  const std::string fault = "1010|The content is larger than 64 MiB. (line 1)|script, line 1";
  EXPECT_EQ(Fault("publish('a', 'x'.repeat((64 << 20) + 1))"), fault);
  EXPECT_EQ(Fault("publish('a', '\xC3\xA9'.repeat((32 << 20) + 1))"), fault);
  EXPECT_EQ(Fault("publish('a', new Uint8Array((64 << 20) + 1))"), fault);
}

TEST_F(Downloads, DetachedBufferIsEmpty) {
  EXPECT_EQ(Content("(() => { const b = new Uint8Array([65]).buffer; b.transfer(); return b; })()"), "");
}

TEST_F(Downloads, UploadedFileIsPublishedAsItIs) {
  const std::string parameters = ArrayOf(1, TicketParameter("f", UploadNew(std::string("\xFF\0x", 3))));
  EXPECT_EQ(Content("parameters.f", parameters), std::string("\xFF\0x", 3));
  EXPECT_EQ(Content("parameters.f.bytes()", parameters), std::string("\xFF\0x", 3));
}

TEST_F(Downloads, PublishedUploadOutlivesAnotherUpload) {
  const std::string url = NewUploadUrl();
  Upload(url, "first");
  const std::string file =
      Text("publish('a', parameters.f)", ArrayOf(1, TicketParameter("f", TicketIn(url))));
  Upload(url, "second");
  EXPECT_EQ(Fetch(file).body, "first");
}

TEST_F(Downloads, ManyFilesOfOneScriptKeepApart) {
  const std::string urls = Text("[1, 2, 3].map((i) => publish(i + '.txt', 'content ' + i)).join(' ')");
  const std::size_t length = urls.find(' ');
  for (int i = 0; i < 3; ++i) {
    const std::string url = urls.substr(static_cast<std::size_t>(i) * (length + 1), length);
    EXPECT_EQ(Fetch(url).body, "content " + std::to_string(i + 1));
  }
}

TEST_F(Downloads, NamesThatDoNoGoodAreRefused) {
  for (const char* name : {"", ".", "..", "a\\nb", "a\\rb", "a\\tb", "a\\0b", "a\\x7fb", "a\\x85b", "a\"b",
                           "a;b", "a=b", "a/b", "a\\\\b", "../a", " a", "a ", "\\ud800"}) {
    const std::string fault = Fault("publish('" + std::string(name) + "', 'x')");
    EXPECT_EQ(fault.substr(0, 43), "1010|The name of a published file has 1 to ") << name;
  }
  EXPECT_EQ(Fault("publish('a'.repeat(256), 'x')").substr(0, 5), "1010|");
  EXPECT_EQ(Fetch(Text("publish('a'.repeat(255), 'x')")).body, "x");
  EXPECT_EQ(HeaderOf(Fetch(Text("publish('\xC3\xA9 (1).txt', 'x')")).head, "Content-Disposition"),
            "attachment; filename=\xC3\xA9 (1).txt");
}

TEST_F(Downloads, OtherContentsAreRefused) {
  for (const char* call :
       {"publish()", "publish('a')", "publish('a', 'b', 'c')", "publish('a', 5)", "publish('a', [65])",
        "publish('a', null)", "publish('a', {})", "publish(1, 'b')", "publish('a', new Uint16Array(2))"}) {
    EXPECT_EQ(Fault(call).substr(0, 19), "1010|publish takes ") << call;
  }
}

TEST_F(Downloads, WrongSessionAndUnknownFileAreRefused) {
  const std::string url = Text("publish('a', 'text')");
  const std::string other = Login();
  EXPECT_EQ(StatusOf(FetchAs(other, url)), "403");
  EXPECT_EQ(StatusOf(FetchAs("", url)), "403");
  EXPECT_EQ(StatusOf(Fetch("http://x/files/" + std::string(32, 'a') + "/")), "404");
  EXPECT_EQ(StatusOf(Fetch("http://x/files/../../etc/passwd")), "404");
  RawClient post(service_->Port());
  post.Send("POST " + PathIn(url) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ +
            "\r\nContent-Length: 0\r\n\r\n");
  EXPECT_EQ(StatusOf(post.Receive()), "405");
  EXPECT_EQ(StatusOf(Fetch(url + "x")), "404");
}

TEST_F(Downloads, FilesDieWithTheSession) {
  const std::string url = Text("publish('a', 'text')");
  Post("", "CloseUserSession", CloseEnvelope(session_));
  EXPECT_EQ(StatusOf(Fetch(url)), "403");
  session_ = Login();
  EXPECT_EQ(StatusOf(Fetch(url)), "404");
}

TEST_F(Downloads, FilesOfAFailedScriptAreGone) {
  const std::string fault = Fault("throw publish('a', 'text')");
  EXPECT_EQ(StatusOf(Fetch(fault.substr(5, fault.find('|', 5) - 5))), "404");
}

TEST_F(Downloads, AreCounted) {
  const std::string url = Text("publish('a', 'text')");
  Fetch(url);
  Fetch(url);
  Fetch(url, "HEAD");
  const nlohmann::json stats = Stats();
  EXPECT_EQ(stats["downloads"], 2);
  EXPECT_EQ(stats["downloadedBytes"], 8);
}

TEST_F(Downloads, FunctionsOutliveTheirScriptWithoutHarm) {
  EXPECT_EQ(Value("globalThis.kept = publish; Promise.resolve().then(() => publish('a', 'b')); 1"),
            "xsd:int|1");
  EXPECT_EQ(Text("typeof kept"), "undefined");
}

}  // namespace
}  // namespace qv::devservice::testing
