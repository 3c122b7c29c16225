// Files that scripts publish, and their downloads.
#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using namespace std::string_literals;

class Downloads : public TransferTest {
 protected:
  // The content that a client gets after publish(NAME, `content`).
  std::string Content(const std::string& content, const std::string& parameters = NilParameters()) {
    const RawAnswer answer = Fetch(Text("publish('a.txt', " + content + ")", parameters));
    EXPECT_EQ(StatusOf(answer), "200") << content;
    return answer.body;
  }
};

TEST_F(Downloads, AnswerHasLengthTypeAndName) {
  const std::string url = Text("publish('a b.txt', 'text')");
  EXPECT_EQ(url.substr(0, 26), "http://127.0.0.1:80/files/");
  EXPECT_EQ(url.size(), 26 + 32 + 1U);
  const RawAnswer answer = Fetch(url);
  EXPECT_EQ(answer.head,
            "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\n"
            "Content-Disposition: attachment; filename=a b.txt\r\nConnection: Keep-Alive\r\n"
            "Content-Length: 4\r\n\r\n");
  EXPECT_EQ(answer.body, "text");
}

TEST_F(Downloads, HeadHasNoBodyAndKeepsTheConnection) {
  const std::string path = PathIn(Text("publish('a', 'text')"));
  RawClient client(Port());
  for (int i = 0; i < 3; ++i) {
    client.Send(FileRequest("HEAD " + path));
    const RawAnswer answer = client.Receive(std::chrono::milliseconds(300));
    EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "4");
    EXPECT_EQ(HeaderOf(answer.head, "Content-Disposition"), "attachment; filename=a");
    EXPECT_EQ(answer.body, "");
    EXPECT_FALSE(answer.closed);
  }
  client.Send(FileRequest("GET " + path));
  EXPECT_EQ(client.Receive().body, "text");
}

TEST_F(Downloads, ContentsAreTextsAndBytes) {
  const std::pair<const char*, std::string> rows[] = {
      {"'\xC3\xA9\xF0\x9F\x98\x80'", "\xC3\xA9\xF0\x9F\x98\x80"},
      {"'a\\ud800-'", "a\xEF\xBF\xBD-"},
      {"'a\\0b'", "a\0b"s},
      {"''", ""},
      {"new Uint8Array([0, 255, 10])", "\0\xFF\n"s},
      {"new Uint8Array([1, 2, 65, 66, 3]).subarray(2, 4)", "AB"},
      {"new Uint8Array([65, 66]).buffer", "AB"},
      {"new Uint8ClampedArray([65])", "A"},
      {"new Uint8Array(0)", ""},
      {"new ArrayBuffer(0)", ""},
      // A detached buffer.
      {"(() => { const b = new Uint8Array([65]).buffer; b.transfer(); return b; })()", ""},
  };
  for (const auto& [content, bytes] : rows) EXPECT_EQ(Content(content), bytes) << content;
  const std::string parameters = OneTicket(UploadNew("\xFF\0x"s));
  EXPECT_EQ(Content("parameters.f", parameters), "\xFF\0x"s);
  EXPECT_EQ(Content("parameters.f.bytes()", parameters), "\xFF\0x"s);
}

TEST_F(Downloads, ContentsGoUpTo64Megabytes) {
  StartWith([](ServiceOptions& options) {
    options.scriptMemoryLimit = std::size_t{4} << 30;
    options.scriptTimeLimit = std::chrono::seconds(60);
  });
  const std::string path = PathIn(Text("publish('a', 'x'.repeat(64 << 20))"));
  RawClient client(Port(), FileRequest("GET " + path));
  EXPECT_EQ(client.Receive().body.size(), std::size_t{64} << 20);
  for (const char* content :
       {"'x'.repeat((64 << 20) + 1)", "'\xC3\xA9'.repeat((32 << 20) + 1)", "new Uint8Array((64 << 20) + 1)"})
    EXPECT_EQ(Fault(std::string("publish('a', ") + content + ")"),
              "1010|The content is larger than 64 MiB. (line 1)|script, line 1");
}

TEST_F(Downloads, PublishedUploadOutlivesAnotherUpload) {
  const std::string url = NewUploadUrl();
  Upload(url, "first");
  const std::string file = Text("publish('a', parameters.f)", OneTicket(TicketIn(url)));
  Upload(url, "second");
  EXPECT_EQ(Fetch(file).body, "first");
}

TEST_F(Downloads, ManyFilesOfOneScriptKeepApart) {
  const std::string urls = Text("[1, 2, 3].map((i) => publish(i + '.txt', 'content ' + i)).join(' ')");
  const std::size_t length = urls.find(' ');
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ(Fetch(urls.substr(i * (length + 1), length)).body, "content " + std::to_string(i + 1));
}

TEST_F(Downloads, BadNamesAndContentsAreRefused) {
  for (const char* name : {"", ".", "..", "a\\nb", "a\\rb", "a\\tb", "a\\0b", "a\\x7fb", "a\\x85b", "a\"b",
                           "a;b", "a=b", "a/b", "a\\\\b", "../a", " a", "a ", "\\ud800"})
    ExpectFaultStart("1010|The name of a published file has 1 to ",
                     {"publish('" + std::string(name) + "', 'x')"});
  ExpectFaultStart("1010|", {"publish('a'.repeat(256), 'x')"});
  ExpectFaultStart(
      "1010|publish takes ",
      {"publish()", "publish('a')", "publish('a', 'b', 'c')", "publish('a', 5)", "publish('a', [65])",
       "publish('a', null)", "publish('a', {})", "publish(1, 'b')", "publish('a', new Uint16Array(2))"});
  EXPECT_EQ(Fetch(Text("publish('a'.repeat(255), 'x')")).body, "x");
  EXPECT_EQ(HeaderOf(Fetch(Text("publish('\xC3\xA9 (1).txt', 'x')")).head, "Content-Disposition"),
            "attachment; filename=\xC3\xA9 (1).txt");
}

TEST_F(Downloads, WrongSessionAndUnknownFileAreRefused) {
  const std::string url = Text("publish('a', 'text')");
  EXPECT_EQ(StatusOf(FetchAs(Login(), url)), "403");
  EXPECT_EQ(StatusOf(FetchAs("", url)), "403");
  for (const std::string& unknown : {"http://x/files/" + std::string(32, 'a') + "/",
                                     std::string("http://x/files/../../etc/passwd"), url + "x"})
    EXPECT_EQ(StatusOf(Fetch(unknown)), "404") << unknown;
  EXPECT_EQ(StatusOf(Ask(FileRequest("POST " + PathIn(url), "Content-Length: 0\r\n"))), "405");
  // The file of a script that failed.
  EXPECT_EQ(StatusOf(Fetch(Between(Fault("throw publish('a', 'text')"), "|", "|"))), "404");
  // Files of a session that has ended.
  Post("", "CloseUserSession", CloseEnvelope(Session()));
  EXPECT_EQ(StatusOf(Fetch(url)), "403");
  session_ = Login();
  EXPECT_EQ(StatusOf(Fetch(url)), "404");
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
