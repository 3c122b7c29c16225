// The client of the control interface, against a server that answers byte by byte.
#include "face/testing/control_client.h"

#include <gtest/gtest.h>

#include "failure_of.h"
#include "fixtures/raw_server.h"

namespace scriptwells::testing {
namespace {

class ControlClientTest : public ::testing::Test {
 protected:
  ControlClient Client() const { return ControlClient(server_.Url() + "/control/x"); }
  // The message of a request that this is the answer to.
  template <typename Class>
  std::string FailureAfter(const qv::test::RawScript& script, Phase phase) {
    server_.Expect(script);
    return FailureOf<Class>(phase, [this] { Client().Get("/counts"); });
  }

  qv::test::RawServer server_;
};

TEST_F(ControlClientTest, SendsPlainRequests) {
  server_.Expect(qv::test::RawScript().Answer("{}").Close());
  EXPECT_EQ(Client().Get("/counts"), "{}");
  server_.Expect(qv::test::RawScript().Answer("").Close());
  Client().Post("/faults", "order");
  const std::string port = std::to_string(server_.Port());
  const std::string rest =
      " HTTP/1.1\r\nHost: 127.0.0.1:" + port + "\r\nConnection: close\r\nContent-Type: application/json\r\n";
  EXPECT_EQ(server_.AllReceived(), "GET /control/x/counts" + rest + "Content-Length: 0\r\n\r\n" +
                                       "POST /control/x/faults" + rest + "Content-Length: 5\r\n\r\norder");
}

TEST_F(ControlClientTest, AnswerMayComeInPieces) {
  const std::string body(100'000, 'b');
  const std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n" + body;
  server_.Expect(qv::test::RawScript()
                     .ReadRequest()
                     .WriteByteByByte(answer.substr(0, 60))
                     .Write(answer.substr(60))
                     .Close());
  EXPECT_EQ(Client().Get("/requests"), body);
}

TEST_F(ControlClientTest, BrokenAnswerIsAnError) {
  using qv::test::RawScript;
  const std::string cut = "the answer of the development service broke off";
  for (const char* answer :
       {"", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n", "HTTP/1.1 200 OK\r\n\r\n{}",
        "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n{}", "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\n{}",
        "HTTP/1.1 200 OK\r\nContent-Length: x\r\n\r\n{}"})
    EXPECT_EQ(FailureAfter<ConnectionError>(RawScript().Reply(answer).Close(), Phase::kReceive), cut)
        << answer;
  EXPECT_EQ(FailureAfter<ConnectionError>(RawScript().ReadRequest().Reset(), Phase::kWait),
            "the development service does not answer: Connection reset by peer");
}

TEST_F(ControlClientTest, RefusalHasTheReason) {
  const std::string answer = "HTTP/1.1 400 Bad Request\r\nContent-Length: 12\r\n\r\nThe reason.\n";
  EXPECT_EQ(FailureAfter<Error>(qv::test::RawScript().Reply(answer).Close(), Phase::kAnswer),
            "the development service refused the request: The reason");
}

TEST(ControlClient, ServiceThatIsGoneIsAnError) {
  std::string url;
  {
    const qv::test::RawServer server;
    url = server.Url() + "/control/x";
  }
  EXPECT_EQ(FailureOf<ConnectionError>(Phase::kConnect, [&url] { ControlClient(url).Get("/counts"); }),
            "the development service does not answer: Connection refused");
}

TEST(ControlClient, ChecksItsAddress) {
  for (const char* url : {"", "http://127.0.0.1:80", "http://127.0.0.1/x", "http://127.0.0.1:0/x",
                          "http://127.0.0.1:65536/x", "https://127.0.0.1:80/x", "http://127.0.0.1:-1/x"})
    EXPECT_EQ(FailureOf(Phase::kAddress, [url] { ControlClient client{std::string(url)}; }),
              std::string("not an address of a control interface: ") + url);
}

}  // namespace
}  // namespace scriptwells::testing
