// Servers that cannot be reached, and what the environment must not change.
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdlib>
#include <string>

#include "http_fixture.h"
#include "system/unique_descriptor.h"

namespace qv::test {
namespace {

class HttpOpenFailureTest : public HttpTest {
 protected:
  ~HttpOpenFailureTest() override {
    for (const char* name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY", "no_proxy"})
      unsetenv(name);
  }
};

TEST_F(HttpOpenFailureTest, RefusedPortGivesLibcurlsWords) {
  const IHttpSessionPtr session = NewSession();
  EXPECT_EQ(session->Open(u"http", u"127.0.0.1", 1, u"", u"", u""), MakeResult(0x80072EFD));
  const std::string words = ErrorWords();
  EXPECT_EQ(words.substr(0, 38), "Failed to connect to 127.0.0.1 port 1 ");
  EXPECT_EQ(Open(session), S_OK) << "the same session can be opened afterwards";
}

TEST_F(HttpOpenFailureTest, PortZeroIsAFailureOfOpen) {
  EXPECT_EQ(NewSession()->Open(u"http", u"127.0.0.1", 0, u"", u"", u""), MakeResult(0x80072EFD));
}

TEST_F(HttpOpenFailureTest, UnknownNameGivesLibcurlsWords) {
  EXPECT_EQ(NewSession()->Open(u"http", u"no-such-host.invalid", 80, u"", u"", u""), MakeResult(0x80072EE7));
  EXPECT_EQ(ErrorWords(), "Could not resolve host: no-such-host.invalid");
}

TEST_F(HttpOpenFailureTest, NameBeyondAsciiIsLookedUpInItsAsciiForm) {
  EXPECT_EQ(NewSession()->Open(u"http", u"b\u00FCcher.invalid", 80, u"", u"", u""), MakeResult(0x80072EE7));
  EXPECT_EQ(ErrorWords(), "Could not resolve host: xn--bcher-kva.invalid");
}

TEST_F(HttpOpenFailureTest, UnknownProxyGivesLibcurlsWords) {
  EXPECT_EQ(Open(NewSession(), "no-such-proxy.invalid"), MakeResult(0x80072EE7));
  EXPECT_EQ(ErrorWords(), "Could not resolve host: no-such-proxy.invalid");
  EXPECT_EQ(server_.Connections(), 0u);
}

TEST_F(HttpOpenFailureTest, RecordNamesTheInterface) {
  NewSession()->Open(u"http", u"127.0.0.1", 1, u"", u"", u"");
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
  HttpOptions options;
  options.connectTimeout = 200;
  SetLimits(options);
  EXPECT_EQ(NewSession()->Open(u"http", u"127.0.0.1", ntohs(address.sin_port), u"", u"", u""),
            MakeResult(0x80072EE2));
  EXPECT_NE(ErrorWords().find("Timeout was reached"), std::string::npos);
}

TEST_F(HttpOpenFailureTest, ProxyOfTheEnvironmentIsIgnored) {
  for (const char* name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
    setenv(name, "http://127.0.0.1:1/", 1);
  Answer(RawAnswerText("ok"));
  EXPECT_EQ(Exchange(2).text, WideString(u"ok"));
}

TEST_F(HttpOpenFailureTest, PlainProxyGetsTheAbsoluteForm) {
  setenv("no_proxy", "*", 1);
  Answer(RawAnswerText("ok"));
  const IHttpSessionPtr session = NewSession();
  const std::string proxy = "127.0.0.1:" + std::to_string(server_.Port());
  ASSERT_EQ(session->Open(u"http", u"Srv.invalid", 8080, u"", u"", Wide(proxy)), S_OK) << ErrorWords();
  const IHttpRequestPtr request = NewRequest(session, "POST", "/a?b");
  EXPECT_EQ(request->SetHeader(u"Host", u"Srv.invalid:8080"), S_OK);
  EXPECT_EQ(request->Send(u"x", u""), S_OK);
  EXPECT_EQ(
      server_.AllReceived(),
      "POST http://srv.invalid:8080/a?b HTTP/1.1\r\nHost: Srv.invalid:8080\r\nContent-Length: 1\r\n\r\nx");
  EXPECT_EQ(ReadText(request, 2), WideString(u"ok"));
}

TEST_F(HttpOpenFailureTest, ConnectionThroughAProxyServesThatProxyOnly) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("one")));
  Exchange(3);
  server_.Expect(RawScript());
  ASSERT_EQ(Open(NewSession(), "127.0.0.1:" + std::to_string(server_.Port())), S_OK);
  ASSERT_TRUE(server_.WaitForDone(2));
  EXPECT_EQ(server_.Connections(), 2u);
}

TEST_F(HttpOpenFailureTest, SecureRequestAsksTheProxyForATunnel) {
  server_.Expect(
      RawScript().ReadRequest().Write("HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n").Close());
  const std::string proxy = "127.0.0.1:" + std::to_string(server_.Port());
  const HRESULT code = NewSession()->Open(u"https", u"srv.invalid", 443, u"", u"", Wide(proxy));
  EXPECT_EQ(code, MakeResult(0x80072EFE));
  EXPECT_EQ(ErrorWords(), "CONNECT tunnel failed, response 403");
  EXPECT_EQ(server_.AllReceived().substr(0, 34), "CONNECT srv.invalid:443 HTTP/1.1\r\n");
}

TEST_F(HttpOpenFailureTest, PlainServerIsNoTlsServer) {
  server_.Expect(RawScript().ReadBytes(1).Write("HTTP/1.1 400 Bad\r\n\r\n").Close());
  const HRESULT code = NewSession()->Open(u"https", u"127.0.0.1", server_.Port(), u"", u"", u"");
  EXPECT_EQ(code, MakeResult(0x80072F8F));
  EXPECT_NE(ErrorWords(), "<none>");
}

TEST_F(HttpOpenFailureTest, TwoHundredFailuresLeaveNoDescriptor) {
  NewSession()->Open(u"http", u"127.0.0.1", 1, u"", u"", u"");
  const std::size_t before = OpenDescriptors();
  for (int i = 0; i < 200; ++i) NewSession()->Open(u"http", u"127.0.0.1", 1, u"", u"", u"");
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace qv::test
