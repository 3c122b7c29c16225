// HTTP as the service speaks it: framing, kept connections, refusals, limits on one peer.
#include <thread>
#include <vector>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

class Http : public ServiceTest {
 protected:
  RawAnswer Create(const std::string& prefix = "", const std::string& user = "a") {
    return Post(prefix, "CreateUserSession", CreateEnvelope("Username=" + user + ";"));
  }
  // A POST to the service path with the given headers; `body` may be anything.
  static std::string OddPost(const std::string& headers, const std::string& body) {
    return Request(std::string("POST ") + kServicePath, "Host: localhost\r\n" + headers) + body;
  }
};

TEST_F(Http, AnswersAndFaultsHaveStatus200) {
  const RawAnswer answer = Create();
  EXPECT_EQ(answer.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=utf-8");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), std::to_string(answer.body.size()));
  const RawAnswer fault = Post("", "Execute", ExecuteEnvelope("x", "1", NilParameters()));
  EXPECT_EQ(fault.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(FaultIn(fault.body).substr(0, 5), "1004|");
}

TEST_F(Http, ConnectionServesManyRequests) {
  RawClient client(Port());
  for (int i = 0; i < 200; ++i) {
    client.Send(PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;")));
    const RawAnswer answer = client.Receive();
    ASSERT_FALSE(answer.closed) << i;
    ASSERT_EQ(FaultIn(answer.body), "(no fault)") << i;
  }
  EXPECT_EQ(Stats()["connections"], 2);
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 200);
}

TEST_F(Http, PipelinedRequestsAreAnsweredInOrder) {
  const RawAnswer first =
      Ask(Request("GET /nothing") + PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;")));
  EXPECT_EQ(StatusOf(first), "404");
}

TEST_F(Http, ManyKeptConnectionsDoNotStarveTheNextClient) {
  std::vector<std::unique_ptr<RawClient>> kept;
  for (int i = 0; i < 60; ++i) {
    kept.push_back(std::make_unique<RawClient>(Port()));
    kept.back()->Send(Request("GET /"));
    ASSERT_EQ(StatusOf(kept.back()->Receive()), "200") << i;
  }
  EXPECT_EQ(Login().size(), 32U);
}

TEST_F(Http, PathsMethodsAndTypes) {
  EXPECT_EQ(FaultIn(Create("/some/where").body), "(no fault)");
  EXPECT_TRUE(Contains(Create("http://server:80").body, "CreateUserSessionResult"));
  EXPECT_EQ(StatusOf(Get("/elsewhere")), "404");
  EXPECT_EQ(StatusOf(Get(kServicePath)), "405");
  EXPECT_EQ(StatusOf(Ask(OddPost("Content-Type: text/plain\r\nContent-Length: 1\r\n", "x"))), "415");
  EXPECT_EQ(StatusOf(Ask(OddPost("Content-Type: multipart/form-data; boundary=b\r\nContent-Length: 9\r\n",
                                 "--b\r\n--b--"))),
            "415");
  EXPECT_EQ(Get("/").body.find("Scriptwells development service " DEVSERVICE_VERSION "\n"), 0U);
}

TEST_F(Http, ChunkedRequestIsRead) {
  const std::string body = CreateEnvelope("Username=a;");
  char length[16];
  static_cast<void>(std::snprintf(length, sizeof length, "%zx", body.size()));
  const RawAnswer answer =
      Ask(OddPost("Content-Type: text/xml\r\n"
                  "SOAPAction: http://quorvane.example/dev/ns/ivarnel/scriptwells#CreateUserSession\r\n"
                  "Transfer-Encoding: chunked\r\n",
                  std::string(length) + "\r\n" + body + "\r\n0\r\n\r\n"));
  EXPECT_EQ(FaultIn(answer.body), "(no fault)");
}

TEST_F(Http, ExpectContinueIsAnswered) {
  RawClient client(Port());
  const std::string request = PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;"));
  const std::size_t body = request.find("\r\n\r\n") + 4;
  client.Send(request.substr(0, body - 2) + "Expect: 100-continue\r\n\r\n");
  EXPECT_EQ(StatusOf(client.Receive(std::chrono::milliseconds(500))), "100");
  client.Send(request.substr(body));
  EXPECT_TRUE(Contains(client.Receive().body, "CreateUserSessionResult"));
}

TEST_F(Http, HostileHeadsDoNotHarm) {
  for (const std::string& bytes :
       {std::string("\r\n\r\n"), std::string("GARBAGE\r\n\r\n"), std::string("GET / HTTP/9.9\r\n\r\n"),
        "GET /" + std::string(100000, 'a') + " HTTP/1.1\r\n\r\n",
        "GET / HTTP/1.1\r\nX: " + std::string(100000, 'a') + "\r\n\r\n",
        std::string("POST / HTTP/1.1\r\nContent-Length: -5\r\n\r\n"),
        std::string("GET / HTTP/1.1\r\nRange: bytes=5-1,x\r\n\r\n"), std::string("\0\0\0\0", 4)}) {
    RawClient client(Port(), bytes);
    client.Receive(std::chrono::milliseconds(200));
  }
  EXPECT_EQ(Login().size(), 32U);
}

class SmallRequests : public Http {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.maxRequestBytes = 10000; });
  }
};

TEST_F(SmallRequests, LongBodyIsRefused) {
  EXPECT_EQ(FaultIn(Create("", std::string(9000, 'a')).body), "(no fault)");
  EXPECT_EQ(StatusOf(Create("", std::string(20000, 'a'))), "413");
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 1);
}

TEST_F(SmallRequests, LongChunkedBodyIsRefused) {
  RawClient client(Port(), OddPost("Content-Type: text/xml\r\nTransfer-Encoding: chunked\r\n", ""));
  for (int i = 0; i < 20; ++i) client.Send("400\r\n" + std::string(1024, 'a') + "\r\n");
  client.Send("0\r\n\r\n");
  EXPECT_EQ(StatusOf(client.Receive()), "413");
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 0);
}

TEST_F(SmallRequests, EndlessBodyIsCutOff) {
  RawClient client(Port(), "POST / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100000000000\r\n\r\n");
  for (int i = 0; i < 2000; ++i) client.Send(std::string(1024, 'a'));
  const RawAnswer answer = client.Receive(std::chrono::seconds(20));
  EXPECT_TRUE(answer.closed || StatusOf(answer) == "413");
  EXPECT_EQ(Login().size(), 32U);
}

std::string ServiceHead() {
  return Request(std::string("POST ") + kServicePath,
                 "Host: localhost\r\nContent-Type: text/xml\r\nContent-Length: 8000\r\n");
}

class RequestTime : public TransferTest {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.requestTime = std::chrono::milliseconds(500); });
  }
  // Sends a head, then one byte now and then until the service answers; "(never)" when it goes on reading.
  std::string StatusAfterDrip(const std::string& head, char byte) {
    RawClient client(Port(), head);
    for (const auto end = Clock::now() + std::chrono::seconds(15); Clock::now() < end;) {
      client.Send(std::string(1, byte));
      const RawAnswer answer = client.Receive(std::chrono::milliseconds(50));
      if (!answer.head.empty()) return StatusOf(answer);
      if (answer.closed) return "(closed)";
    }
    return "(never)";
  }
};

TEST_F(RequestTime, DrippingRequestsAreEnded) {
  EXPECT_EQ(StatusAfterDrip("GET / HTTP/1.1\r\nHost: localhost\r\nX-Slow: ", 'a'), "408");
  EXPECT_EQ(StatusAfterDrip(ServiceHead(), ' '), "408");
  EXPECT_EQ(StatusAfterDrip(UploadHead(PathIn(NewUploadUrl()), 100000), 'x'), "408");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(RequestTime, RunningScriptsDoNotCount) {
  EXPECT_EQ(Value("const end = Date.now() + 1500; while (Date.now() < end); 7"), "xsd:int|7");
}

using Bodies = ServiceTest;

TEST_F(Bodies, OfAllRequestsShareABudget) {
  StartWith([](ServiceOptions& options) { options.maxBodyBytes = 10000; });
  const std::string whole = ServiceHead() + std::string(8000, ' ');
  EXPECT_EQ(StatusOf(Ask(whole)), "200");  // A fault: the body is not an envelope.
  RawClient slow(Port(), ServiceHead() + std::string(6000, ' '));
  RawAnswer answer;
  for (int i = 0; i < 100 && StatusOf(answer) != "503"; ++i) {
    // The service may not have read the other body yet.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    answer = Ask(whole);
  }
  EXPECT_EQ(StatusOf(answer) + " " + answer.body,
            "503 The bodies of all requests together take too much memory. Try again later.\n");
  slow.Send(std::string(2000, ' '));
  EXPECT_EQ(StatusOf(slow.Receive()), "200");
  EXPECT_EQ(StatusOf(Ask(whole)), "200");
}

}  // namespace
}  // namespace qv::devservice::testing
