#include <thread>
#include <vector>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

class Http : public ServiceTest {
 protected:
  void SetUp() override { StartWith(TestOptions()); }
};

TEST_F(Http, AnswerHasLengthAndType) {
  const RawAnswer answer = Post("", "CreateUserSession", CreateEnvelope("Username=a;"));
  EXPECT_EQ(answer.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=utf-8");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), std::to_string(answer.body.size()));
}

TEST_F(Http, FaultHasStatus200) {
  const RawAnswer answer = Post("", "Execute", ExecuteEnvelope("x", "1", NilParameters()));
  EXPECT_EQ(answer.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(FaultIn(answer.body).substr(0, 5), "1004|");
}

TEST_F(Http, ConnectionServesManyRequests) {
  RawClient client(service_->Port());
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
  RawClient client(service_->Port());
  client.Send("GET /nothing HTTP/1.1\r\nHost: localhost\r\n\r\n" +
              PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;")));
  EXPECT_EQ(client.Receive().head.substr(0, 12), "HTTP/1.1 404");
}

TEST_F(Http, ManyKeptConnectionsDoNotStarveTheNextClient) {
  std::vector<std::unique_ptr<RawClient>> kept;
  for (int i = 0; i < 60; ++i) {
    kept.push_back(std::make_unique<RawClient>(service_->Port()));
    kept.back()->Send("GET / HTTP/1.1\r\nHost: localhost\r\n\r\n");
    ASSERT_EQ(kept.back()->Receive().head.substr(0, 12), "HTTP/1.1 200") << i;
  }
  EXPECT_EQ(Login().size(), 32u);
}

TEST_F(Http, AnyPrefixAndWholeUrlsAreAccepted) {
  EXPECT_EQ(FaultIn(Post("/some/where", "CreateUserSession", CreateEnvelope("Username=a;")).body),
            "(no fault)");
  EXPECT_NE(Post("http://server:80", "CreateUserSession", CreateEnvelope("Username=a;"))
                .body.find("CreateUserSessionResult"),
            std::string::npos);
}

TEST_F(Http, OtherPathsMethodsAndTypesAreRefused) {
  EXPECT_EQ(Get("/elsewhere").head.substr(0, 12), "HTTP/1.1 404");
  EXPECT_EQ(Get("/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx").head.substr(0, 12), "HTTP/1.1 405");
  RawClient client(service_->Port());
  client.Send(
      "POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\nHost: localhost\r\n"
      "Content-Type: text/plain\r\nContent-Length: 1\r\n\r\nx");
  EXPECT_EQ(client.Receive().head.substr(0, 12), "HTTP/1.1 415");
  RawClient form(service_->Port());
  form.Send(
      "POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\nHost: localhost\r\n"
      "Content-Type: multipart/form-data; boundary=b\r\nContent-Length: 9\r\n\r\n--b\r\n--b--");
  EXPECT_EQ(form.Receive().head.substr(0, 12), "HTTP/1.1 415");
}

TEST_F(Http, WelcomePageNamesTheService) {
  EXPECT_EQ(Get("/").body.substr(0, 38), "Scriptwells development service 0.1.0\n");
}

TEST_F(Http, ChunkedRequestIsRead) {
  RawClient client(service_->Port());
  const std::string body = CreateEnvelope("Username=a;");
  char length[16];
  std::snprintf(length, sizeof length, "%zx", body.size());
  client.Send(
      "POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\nHost: localhost\r\nContent-Type: "
      "text/xml\r\n"
      "SOAPAction: http://quorvane.example/dev/ns/ivarnel/scriptwells#CreateUserSession\r\n"
      "Transfer-Encoding: chunked\r\n\r\n" +
      std::string(length) + "\r\n" + body + "\r\n0\r\n\r\n");
  EXPECT_EQ(FaultIn(client.Receive().body), "(no fault)");
}

TEST_F(Http, ExpectContinueIsAnswered) {
  RawClient client(service_->Port());
  const std::string request = PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;"));
  const std::size_t body = request.find("\r\n\r\n") + 4;
  client.Send(request.substr(0, body - 2) + "Expect: 100-continue\r\n\r\n");
  EXPECT_EQ(client.Receive(std::chrono::milliseconds(500)).head.substr(0, 12), "HTTP/1.1 100");
  client.Send(request.substr(body));
  EXPECT_NE(client.Receive().body.find("CreateUserSessionResult"), std::string::npos);
}

TEST_F(Http, HostileHeadsDoNotHarm) {
  for (const std::string& bytes :
       {std::string("\r\n\r\n"), std::string("GARBAGE\r\n\r\n"), std::string("GET / HTTP/9.9\r\n\r\n"),
        "GET /" + std::string(100000, 'a') + " HTTP/1.1\r\n\r\n",
        "GET / HTTP/1.1\r\nX: " + std::string(100000, 'a') + "\r\n\r\n",
        std::string("POST / HTTP/1.1\r\nContent-Length: -5\r\n\r\n"),
        std::string("GET / HTTP/1.1\r\nRange: bytes=5-1,x\r\n\r\n"), std::string("\0\0\0\0", 4)}) {
    RawClient client(service_->Port());
    client.Send(bytes);
    client.Receive(std::chrono::milliseconds(200));
  }
  EXPECT_EQ(Login().size(), 32u);
}

class SmallRequests : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.maxRequestBytes = 10000;
    StartWith(options);
  }
};

TEST_F(SmallRequests, LongBodyIsRefused) {
  EXPECT_EQ(
      FaultIn(Post("", "CreateUserSession", CreateEnvelope("Username=" + std::string(9000, 'a') + ";")).body),
      "(no fault)");
  const RawAnswer answer =
      Post("", "CreateUserSession", CreateEnvelope("Username=" + std::string(20000, 'a') + ";"));
  EXPECT_EQ(answer.head.substr(0, 12), "HTTP/1.1 413");
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 1);
}

TEST_F(SmallRequests, LongChunkedBodyIsRefused) {
  RawClient client(service_->Port());
  client.Send(
      "POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\nHost: localhost\r\nContent-Type: "
      "text/xml\r\n"
      "Transfer-Encoding: chunked\r\n\r\n");
  for (int i = 0; i < 20; ++i) client.Send("400\r\n" + std::string(1024, 'a') + "\r\n");
  client.Send("0\r\n\r\n");
  EXPECT_EQ(client.Receive().head.substr(0, 12), "HTTP/1.1 413");
  EXPECT_EQ(Stats()["actions"]["CreateUserSession"], 0);
}

TEST_F(SmallRequests, EndlessBodyIsCutOff) {
  RawClient client(service_->Port());
  client.Send("POST / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100000000000\r\n\r\n");
  for (int i = 0; i < 2000; ++i) client.Send(std::string(1024, 'a'));
  const RawAnswer answer = client.Receive(std::chrono::seconds(20));
  EXPECT_TRUE(answer.closed || answer.head.substr(0, 12) == "HTTP/1.1 413");
  EXPECT_EQ(Login().size(), 32u);
}

}  // namespace
}  // namespace qv::devservice::testing
