// The component through a real proxy.
#include "child_process.h"
#include "http_fixture.h"
#include "nginx.h"
#include "tinyproxy.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

std::string Dead() {
  return "127.0.0.1:" + std::to_string(FreePort());
}

class Proxy : public HttpTest {
 protected:
  std::string Server() const { return "127.0.0.1:" + std::to_string(server_.Port()); }

  static HRESULT OpenTls(const IHttpSessionPtr& session, const Nginx& nginx, const std::string& proxy) {
    return session->Open(u"https", u"127.0.0.1", nginx.Port(), u"", u"", Wide(proxy));
  }
  // A POST of "question" through the proxy; the answer's head is there.
  IHttpRequestPtr SentThrough(const std::string& proxy) {
    const IHttpSessionPtr session = NewSession();
    EXPECT_EQ(Open(session, proxy), S_OK) << ErrorWords();
    IHttpRequestPtr request = NewRequest(session, "POST", "/x?a=b");
    EXPECT_EQ(request->SetHeader(u"Host", Wide(Server())), S_OK);
    EXPECT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
    return request;
  }

  PlainEnvironment environment_;
};

TEST_F(Proxy, PlainRequestGoesInAbsoluteFormOnOneConnection) {
  const Tinyproxy proxy;
  Answer(RawAnswerText("answer"));
  EXPECT_EQ(ReadText(SentThrough(proxy.Address()), 6), WideString(u"answer"));
  EXPECT_EQ(proxy.Requests(1), Words{"POST http://" + Server() + "/x?a=b HTTP/1.1"});
  EXPECT_EQ(proxy.Connections(), 1u);
  EXPECT_EQ(server_.Connections(), 1u);
  const std::string received = server_.AllReceived();
  EXPECT_EQ(received.substr(0, 12), "POST /x?a=b ");
  EXPECT_EQ(received.substr(received.size() - 12), "\r\n\r\nquestion");
}

TEST_F(Proxy, ManyRequestsAllGoThrough) {
  const Tinyproxy proxy;
  for (int i = 0; i < 20; ++i) Answer(RawAnswerText("answer"));
  for (int i = 0; i < 20; ++i) EXPECT_EQ(ReadText(SentThrough(proxy.Address()), 6), WideString(u"answer"));
  EXPECT_EQ(proxy.Requests(20).size(), 20u);
  EXPECT_EQ(server_.Connections(), 20u);
}

// Proxies in the field close behind an answer without having announced it (tinyproxy does). What is sent on
// such a connection meanwhile is lost, and it may not be sent twice.
TEST_F(Proxy, ConnectionThatTheProxyDoesNotPromiseToKeepIsNotUsedAgain) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Close());
  Answer(RawAnswerText("two"));
  EXPECT_EQ(ReadText(SentThrough(Server()), 3), WideString(u"one"));
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(Open(session, Server()), S_OK);
  const IHttpRequestPtr request = NewRequest(session);
  ASSERT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
  EXPECT_EQ(ReadText(request, 3), WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 2u);
}

TEST_F(Proxy, LargeBodyPassesBothWays) {
  const Tinyproxy proxy;
  const std::string body(3'000'000, 'b');
  Answer(RawAnswerText(body));
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(Open(session, proxy.Address()), S_OK);
  const IHttpRequestPtr request = NewRequest(session);
  ASSERT_EQ(request->Send(Wide(body), u""), S_OK) << ErrorWords();
  EXPECT_EQ(ToUtf8(ReadText(request, 3'000'000)), body);
  EXPECT_EQ(server_.AllReceived().size() - server_.AllReceived().find("\r\n\r\n") - 4, body.size());
}

TEST_F(Proxy, SecureRequestGoesThroughATunnel) {
  const Tinyproxy proxy;
  const Certificates certificates;
  const CertificateFiles good = certificates.Make(CertificateKind::kGood);
  const Nginx nginx(&good);
  const EnvironmentVariable store("SSL_CERT_FILE", certificates.Authority().c_str());
  nginx.Offer("f.txt", "secret");
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(OpenTls(session, nginx, proxy.Address()), S_OK) << ErrorWords();
  const IHttpRequestPtr request = NewRequest(session, "GET", "/files/f.txt");
  ASSERT_EQ(request->SetHeader(u"Host", u"127.0.0.1"), S_OK);
  ASSERT_EQ(request->Send(u"", u""), S_OK) << ErrorWords();
  EXPECT_EQ(ReadText(request, 6), WideString(u"secret"));
  EXPECT_EQ(proxy.Requests(1), Words{"CONNECT 127.0.0.1:" + std::to_string(nginx.Port()) + " HTTP/1.1"});
  EXPECT_EQ(nginx.Requests(1), "GET /files/f.txt HTTP/1.1\n");
}

// The proxy cannot pass itself off as the server.
TEST_F(Proxy, CertificateIsCheckedThroughTheTunnel) {
  const Tinyproxy proxy;
  const Certificates certificates;
  const CertificateFiles bad = certificates.Make(CertificateKind::kWrongName);
  const Nginx nginx(&bad);
  const EnvironmentVariable store("SSL_CERT_FILE", certificates.Authority().c_str());
  EXPECT_EQ(OpenTls(NewSession(), nginx, proxy.Address()), MakeResult(0x80072F8F));
  EXPECT_EQ(ErrorWords(),
            "SSL: no alternative certificate subject name matches target host name '127.0.0.1'");
}

TEST_F(Proxy, TunnelThatIsRefusedIsAFailureOfOpen) {
  const Tinyproxy proxy("ConnectPort 443\n");
  const Certificates certificates;
  const CertificateFiles good = certificates.Make(CertificateKind::kGood);
  const Nginx nginx(&good);
  EXPECT_EQ(OpenTls(NewSession(), nginx, proxy.Address()), MakeResult(0x80072EFE));
  EXPECT_EQ(ErrorWords(), "CONNECT tunnel failed, response 403");
  EXPECT_EQ(nginx.Requests(0), "");
}

TEST_F(Proxy, RefusalOfAPlainRequestIsAnAnswer) {
  const TemporaryDirectory files;
  const Tinyproxy proxy("Filter \"" + files.Write("filter", "127.0.0.1\n") + "\"\n");
  const IHttpRequestPtr request = SentThrough(proxy.Address());
  EXPECT_EQ(Header(request, "StatusCode"), "403");
  EXPECT_EQ(server_.Connections(), 0u);
}

TEST_F(Proxy, ClientThatIsNotAllowedIsRefused) {
  const Tinyproxy proxy("Allow 10.1.2.3\n");
  EXPECT_EQ(Header(SentThrough(proxy.Address()), "StatusCode"), "403");
  EXPECT_EQ(server_.Connections(), 0u);
}

TEST_F(Proxy, ServerThatIsNotThereIsTheProxysAnswer) {
  const Tinyproxy proxy;
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(session->Open(u"http", u"127.0.0.1", FreePort(), u"", u"", Wide(proxy.Address())), S_OK);
  const IHttpRequestPtr request = NewRequest(session);
  ASSERT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
  EXPECT_EQ(Header(request, "StatusCode").substr(0, 1), "5");
}

TEST_F(Proxy, ProxyThatIsNotThereIsAFailureOfOpen) {
  EXPECT_EQ(Open(NewSession(), Dead()), MakeResult(0x80072EFD));
  EXPECT_EQ(ErrorWords().substr(0, 35), "Failed to connect to 127.0.0.1 port");
  EXPECT_EQ(NewSession()->Open(u"https", u"127.0.0.1", server_.Port(), u"", u"", Wide(Dead())),
            MakeResult(0x80072EFD));
  EXPECT_EQ(server_.Connections(), 0u);
}

TEST_F(Proxy, NextCallWithoutTheProxyGoesDirectly) {
  const Tinyproxy proxy;
  Answer(RawAnswerText("through"));
  EXPECT_EQ(ReadText(SentThrough(proxy.Address()), 7), WideString(u"through"));
  Answer(RawAnswerText("directly"));
  EXPECT_EQ(Exchange(8).text, WideString(u"directly"));
  EXPECT_EQ(proxy.Requests(1).size(), 1u);
}

TEST_F(Proxy, VariablesOfTheEnvironmentNameNoProxy) {
  const Tinyproxy proxy;
  const std::string url = "http://" + proxy.Address() + "/";
  const Certificates certificates;
  const CertificateFiles good = certificates.Make(CertificateKind::kGood);
  const Nginx nginx(&good);
  nginx.Offer("f.txt", "secret");
  const EnvironmentVariable store("SSL_CERT_FILE", certificates.Authority().c_str());
  const EnvironmentVariable variables[] = {{"http_proxy", url.c_str()},  {"HTTP_PROXY", url.c_str()},
                                           {"https_proxy", url.c_str()}, {"HTTPS_PROXY", url.c_str()},
                                           {"all_proxy", url.c_str()},   {"ALL_PROXY", url.c_str()}};
  Answer(RawAnswerText("directly"));
  EXPECT_EQ(Exchange(8).text, WideString(u"directly"));
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(OpenTls(session, nginx, ""), S_OK) << ErrorWords();
  const IHttpRequestPtr request = NewRequest(session, "GET", "/files/f.txt");
  ASSERT_EQ(request->Send(u"", u""), S_OK) << ErrorWords();
  EXPECT_EQ(ReadText(request, 6), WideString(u"secret"));
  EXPECT_EQ(proxy.Connections(), 0u);
}

// The same proxy takes the same requests when it is named as an argument, so the test above proves something.
TEST_F(Proxy, ExclusionsOfTheEnvironmentDoNotCount) {
  const Tinyproxy proxy;
  const EnvironmentVariable variables[] = {{"no_proxy", "*"}, {"NO_PROXY", "*"}};
  Answer(RawAnswerText("through"));
  EXPECT_EQ(ReadText(SentThrough(proxy.Address()), 7), WideString(u"through"));
  EXPECT_EQ(proxy.Requests(1).size(), 1u);
}

}  // namespace
}  // namespace qv::test
