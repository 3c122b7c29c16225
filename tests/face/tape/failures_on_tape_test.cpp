// Connections that failed fail again, in the same way.
#include "face/tape/tape_report.h"
#include "face/tape/taped_session.h"
#include "fixtures/raw_server.h"

namespace scriptwells {
namespace {

using qv::test::RawScript;
using test::ErrorOf;

constexpr char kHead[] = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 100\r\n\r\n";

class FailuresOnTape : public ::testing::Test {
 protected:
  // What opening a session ends with, recorded and then played; both must be the same. Returns it.
  std::string Fails(const std::string& url, const std::string& name) {
    Options options;
    options.silenceTimeout = std::chrono::milliseconds(150);
    const auto open = [&] { return ErrorOf([&] { Session(url, {"joe", "secret"}, options); }); };
    options.record = directory_.Path(name);
    std::string recorded = open();
    options.record.clear();
    options.replay = directory_.Path(name);
    EXPECT_EQ(open(), recorded);
    EXPECT_EQ(VerifyTape(directory_.Path(name)), std::vector<std::string>());
    return recorded;
  }
  std::string Fails(const RawScript& script, const std::string& name) {
    qv::test::RawServer server;
    server.Expect(script);
    return Fails(server.Url(), name);
  }

  const qv::TemporaryDirectory directory_;
};

TEST_F(FailuresOnTape, OfConnecting) {
  EXPECT_EQ(Fails("http://127.0.0.1:1", "refused").rfind("connect: cannot reach http://127.0.0.1:1: ", 0),
            0U);
  EXPECT_EQ(Fails("http://no-such-host.invalid", "name").rfind("connect: cannot reach ", 0), 0U);
  EXPECT_NE(directory_.Read("name").find("\n! connect 0x"), std::string::npos);
}

TEST_F(FailuresOnTape, OfTheTlsHandshake) {
  qv::test::RawServer server;
  server.Expect(RawScript().ReadBytes(1).Write("no TLS at all").Close());
  const std::string url = "https://" + server.Address();
  EXPECT_EQ(Fails(url, "tls").rfind("TLS: cannot reach " + url + ": ", 0), 0U);
}

TEST_F(FailuresOnTape, OfAnswers) {
  EXPECT_EQ(Fails(RawScript().ReadRequest().Close(), "none").rfind("wait: no answer from ", 0), 0U);
  EXPECT_EQ(Fails(RawScript().ReadRequest().Stall(), "silence").rfind("wait: no answer from ", 0), 0U);
  EXPECT_EQ(Fails(RawScript().Reply(kHead).Write("<soap").Close(), "cut").rfind("receive: the answer of ", 0),
            0U);
  EXPECT_EQ(
      Fails(RawScript().Reply(kHead).Write("<soap").Stall(), "slow").rfind("receive: the answer of ", 0), 0U);
  EXPECT_EQ(
      Fails(RawScript().Reply("HTTP/1.1 200 OK\r\nA").Close(), "head").rfind("receive: no answer from ", 0),
      0U);
  EXPECT_EQ(Fails(RawScript().Reply("no HTTP at all\r\n\r\n").Close(), "other").rfind("answer: ", 0), 0U);
  EXPECT_EQ(Fails(RawScript().Answer("<html>hello</html>"), "html").rfind("answer: ", 0), 0U);
  EXPECT_EQ(Fails(RawScript().Reply("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"), "404")
                .rfind("answer: ", 0),
            0U);
}

// The tape has one chunk of them.
TEST_F(FailuresOnTape, ChunksAreJoined) {
  qv::test::RawServer server;
  server.Expect(
      RawScript().Reply("HTTP/1.1 200 OK\r\nContent-Disposition: attachment; "
                        "filename=a.txt\r\nTransfer-Encoding: chunked\r\n\r\n"
                        "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"));
  Options options;
  options.record = directory_.Path("chunks");
  Session::Adopt(server.Url(), "session-1", options).Download(server.Url() + "/f", directory_.Path());
  EXPECT_EQ(directory_.Read("a.txt"), "abcde");
  directory_.Write("a.txt", "");
  options.record.clear();
  options.replay = directory_.Path("chunks");
  Session::Adopt(server.Url(), "session-1", options).Download(server.Url() + "/f", directory_.Path());
  EXPECT_EQ(directory_.Read("a.txt"), "abcde");
}

}  // namespace
}  // namespace scriptwells
