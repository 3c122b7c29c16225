// Servers that cannot be reached, and what the environment must not change.
#include <netinet/in.h>
#include <sys/socket.h>

#include <string>

#include "fixtures/environment.h"
#include "http_fixture.h"
#include "system/unique_descriptor.h"

namespace qv::test {
namespace {

using HttpOpenFailureTest = HttpTest;

TEST_F(HttpOpenFailureTest, UnreachableServerGivesLibcurlsMessage) {
  const struct {
    const char* host;
    std::uint16_t port;
    const char* proxy;
    HRESULT code;
    std::string words;  // that the message starts with
  } rows[] = {
      {"127.0.0.1", 1, "", kNotConnected, "Failed to connect to 127.0.0.1 port 1 "},
      {"127.0.0.1", 0, "", kNotConnected, "Failed to connect to 127.0.0.1 port 0 "},
      {"no-such-host.invalid", 80, "", kNotResolved, "Could not resolve host: no-such-host.invalid"},
      {"b\xFC\x63her.invalid", 80, "", kNotResolved, "Could not resolve host: xn--bcher-kva.invalid"},
      {"127.0.0.1", server_.Port(), "no-such-proxy.invalid", kNotResolved,
       "Could not resolve host: no-such-proxy.invalid"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(OpenAt("http", row.host, row.port, row.proxy), row.code) << row.host;
    EXPECT_EQ(ErrorWords().substr(0, row.words.size()), row.words);
  }
  EXPECT_EQ(server_.Connections(), 0U);
}

TEST_F(HttpOpenFailureTest, SessionCanBeOpenedAfterAFailure) {
  const IHttpSessionPtr session = NewSession();
  EXPECT_EQ(session->Open(u"http", u"127.0.0.1", 1, u"", u"", u""), kNotConnected);
  EXPECT_EQ(Open(session), S_OK);
}

TEST_F(HttpOpenFailureTest, RecordNamesTheInterface) {
  OpenAt("http", "127.0.0.1", 1);
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_TRUE(info.interfaceId == IHttpSession::kIid);
}

// A listener whose queue is full leaves further connections without an answer.
TEST_F(HttpOpenFailureTest, ServerThatDoesNotAnswerTimesOut) {
  const UniqueDescriptor listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  sockaddr* plain = reinterpret_cast<sockaddr*>(&address);
  ASSERT_EQ(bind(listener.Get(), plain, size), 0);
  ASSERT_EQ(listen(listener.Get(), 0), 0);
  ASSERT_EQ(getsockname(listener.Get(), plain, &size), 0);
  const UniqueDescriptor filler(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(connect(filler.Get(), plain, size), 0);
  Limit(&HttpOptions::connectTimeout, 200);
  EXPECT_EQ(OpenAt("http", "127.0.0.1", ntohs(address.sin_port)), kTimedOut);
  EXPECT_NE(ErrorWords().find("Timeout was reached"), std::string::npos);
}

TEST_F(HttpOpenFailureTest, ProxyOfTheEnvironmentIsIgnored) {
  const char* const nobody = "http://127.0.0.1:1/";
  const EnvironmentVariable variables[] = {
      {"http_proxy", nobody}, {"HTTP_PROXY", nobody}, {"all_proxy", nobody}, {"ALL_PROXY", nobody}};
  Answer("ok");
  ExpectText("ok");
}

TEST_F(HttpOpenFailureTest, PlainProxyGetsTheAbsoluteForm) {
  const EnvironmentVariable exclusions("no_proxy", "*");
  Answer("ok");
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(session->Open(u"http", u"Srv.invalid", 8080, u"", u"", Wide(server_.Address())), S_OK);
  const IHttpRequestPtr request = NewRequest(session, "POST", "/a?b");
  EXPECT_EQ(request->SetHeader(u"Host", u"Srv.invalid:8080"), S_OK);
  EXPECT_EQ(request->Send(u"x", u""), S_OK);
  EXPECT_EQ(
      server_.AllReceived(),
      "POST http://srv.invalid:8080/a?b HTTP/1.1\r\nHost: Srv.invalid:8080\r\nContent-Length: 1\r\n\r\nx");
  EXPECT_EQ(ReadText(request, 2), "ok");
}

TEST_F(HttpOpenFailureTest, ConnectionThroughAProxyServesThatProxyOnly) {
  Answer("one");
  ExpectText("one");
  server_.Expect(RawScript());
  ASSERT_EQ(Open(NewSession(), server_.Address()), S_OK);
  ASSERT_TRUE(server_.WaitForDone(2));
  EXPECT_EQ(server_.Connections(), 2U);
}

TEST_F(HttpOpenFailureTest, SecureRequestAsksTheProxyForATunnel) {
  ReplyAndClose("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n");
  EXPECT_EQ(OpenAt("https", "srv.invalid", 443, server_.Address()), kCutOff);
  EXPECT_EQ(ErrorWords(), "CONNECT tunnel failed, response 403");
  EXPECT_EQ(server_.AllReceived().substr(0, 34), "CONNECT srv.invalid:443 HTTP/1.1\r\n");
}

TEST_F(HttpOpenFailureTest, PlainServerIsNoTlsServer) {
  server_.Expect(RawScript().ReadBytes(1).Write("HTTP/1.1 400 Bad\r\n\r\n").Close());
  EXPECT_EQ(OpenAt("https", "127.0.0.1", server_.Port()), kTls);
  EXPECT_NE(ErrorWords(), "<none>");
}

TEST_F(HttpOpenFailureTest, TwoHundredFailuresLeaveNoDescriptor) {
  OpenAt("http", "127.0.0.1", 1);
  const std::size_t before = OpenDescriptors();
  for (int i = 0; i < 200; ++i) OpenAt("http", "127.0.0.1", 1);
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace qv::test
