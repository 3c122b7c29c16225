// The component through a real proxy.
#include "child_process.h"
#include "http_fixture.h"
#include "nginx.h"
#include "tinyproxy.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

class Proxy : public HttpTest {
 protected:
  IHttpSessionPtr OpenThrough(const std::string& proxy) {
    IHttpSessionPtr session = NewSession();
    EXPECT_EQ(Open(session, proxy), S_OK) << ErrorWords();
    return session;
  }
  // A POST of "question" through the proxy; the answer's head is there.
  IHttpRequestPtr SentThrough(const std::string& proxy) {
    IHttpRequestPtr request = NewRequest(OpenThrough(proxy), "POST", "/x?a=b");
    EXPECT_EQ(request->SetHeader(u"Host", Wide(server_.Address())), S_OK);
    EXPECT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
    return request;
  }
  static HRESULT OpenTls(const SecureNginx& nginx, const std::string& proxy) {
    return OpenAt("https", "127.0.0.1", nginx->Port(), proxy);
  }
  // The server's file "f.txt" arrives.
  static void ExpectSecret(const SecureNginx& nginx, const std::string& proxy) {
    nginx.Trust();
    nginx->Offer("f.txt", "secret");
    const IHttpSessionPtr session = NewSession();
    ASSERT_EQ(session->Open(u"https", u"127.0.0.1", nginx->Port(), u"", u"", Wide(proxy)), S_OK);
    const IHttpRequestPtr request = NewRequest(session, "GET", "/files/f.txt");
    ASSERT_EQ(request->Send(u"", u""), S_OK) << ErrorWords();
    EXPECT_EQ(ReadText(request, 6), "secret");
  }
  void ExpectThrough(const std::string& proxy, const std::string& text = "through") {
    Answer(text);
    EXPECT_EQ(ReadText(SentThrough(proxy), static_cast<std::int32_t>(text.size())), text);
  }

  PlainEnvironment environment_;
};

TEST_F(Proxy, PlainRequestGoesInAbsoluteFormOnOneConnection) {
  const Tinyproxy proxy;
  ExpectThrough(proxy.Address());
  EXPECT_EQ(proxy.Requests(1), Words{"POST " + server_.Url() + "/x?a=b HTTP/1.1"});
  EXPECT_EQ(proxy.Connections(), 1U);
  EXPECT_EQ(server_.Connections(), 1U);
  const std::string received = server_.AllReceived();
  EXPECT_EQ(received.substr(0, 12), "POST /x?a=b ");
  EXPECT_EQ(received.substr(received.size() - 12), "\r\n\r\nquestion");
}

TEST_F(Proxy, ManyRequestsAllGoThrough) {
  const Tinyproxy proxy;
  for (int i = 0; i < 20; ++i) ExpectThrough(proxy.Address());
  EXPECT_EQ(proxy.Requests(20).size(), 20U);
  EXPECT_EQ(server_.Connections(), 20U);
}

// Proxies in the field close after an answer without having announced it (tinyproxy does). What is sent on
// such a connection meanwhile is lost, and it may not be sent twice.
TEST_F(Proxy, ConnectionThatTheProxyDoesNotPromiseToKeepIsNotUsedAgain) {
  server_.Expect(RawScript().Answer("one").ReadRequest().Close());
  EXPECT_EQ(ReadText(SentThrough(server_.Address()), 3), "one");
  ExpectThrough(server_.Address(), "two");
  EXPECT_EQ(server_.Connections(), 2U);
}

TEST_F(Proxy, LargeBodyPassesBothWays) {
  const Tinyproxy proxy;
  const std::string body(3'000'000, 'b');
  Answer(body);
  const IHttpRequestPtr request = NewRequest(OpenThrough(proxy.Address()));
  ASSERT_EQ(request->Send(Wide(body), u""), S_OK) << ErrorWords();
  EXPECT_EQ(ReadText(request, 3'000'000), body);
  EXPECT_EQ(server_.AllReceived().size() - server_.AllReceived().find("\r\n\r\n") - 4, body.size());
}

TEST_F(Proxy, SecureRequestGoesThroughATunnel) {
  const Tinyproxy proxy;
  const SecureNginx nginx;
  ExpectSecret(nginx, proxy.Address());
  EXPECT_EQ(proxy.Requests(1), Words{"CONNECT 127.0.0.1:" + std::to_string(nginx->Port()) + " HTTP/1.1"});
  EXPECT_EQ(nginx->Requests(1), "GET /files/f.txt HTTP/1.1\n");
}

// The proxy cannot pass itself off as the server.
TEST_F(Proxy, CertificateIsCheckedThroughTheTunnel) {
  const Tinyproxy proxy;
  const SecureNginx nginx(CertificateKind::kWrongName);
  nginx.Trust();
  EXPECT_EQ(OpenTls(nginx, proxy.Address()), kTls);
  EXPECT_EQ(ErrorWords(),
            "SSL: no alternative certificate subject name matches target host name '127.0.0.1'");
}

TEST_F(Proxy, TunnelThatIsRefusedIsAFailureOfOpen) {
  const Tinyproxy proxy("ConnectPort 443\n");
  const SecureNginx nginx;
  EXPECT_EQ(OpenTls(nginx, proxy.Address()), kCutOff);
  EXPECT_EQ(ErrorWords(), "CONNECT tunnel failed, response 403");
  EXPECT_EQ(nginx->Requests(0), "");
}

TEST_F(Proxy, RefusalOfAPlainRequestIsAnAnswer) {
  const TemporaryDirectory files;
  for (const std::string& line :
       {"Filter \"" + files.Write("filter", "127.0.0.1\n") + "\"\n", std::string("Allow 10.1.2.3\n")}) {
    const Tinyproxy proxy(line);
    EXPECT_EQ(Header(SentThrough(proxy.Address()), "StatusCode"), "403") << line;
    EXPECT_EQ(server_.Connections(), 0U);
  }
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
  for (const char* protocol : {"http", "https"}) {
    const std::string dead = "127.0.0.1:" + std::to_string(FreePort());
    EXPECT_EQ(OpenAt(protocol, "127.0.0.1", server_.Port(), dead), kNotConnected);
    EXPECT_EQ(ErrorWords().substr(0, 35), "Failed to connect to 127.0.0.1 port");
  }
  EXPECT_EQ(server_.Connections(), 0U);
}

TEST_F(Proxy, NextCallWithoutTheProxyGoesDirectly) {
  const Tinyproxy proxy;
  ExpectThrough(proxy.Address());
  Answer("directly");
  ExpectText("directly");
  EXPECT_EQ(proxy.Requests(1).size(), 1U);
}

TEST_F(Proxy, VariablesOfTheEnvironmentNameNoProxy) {
  const Tinyproxy proxy;
  const std::string url = "http://" + proxy.Address() + "/";
  const EnvironmentVariable variables[] = {{"http_proxy", url.c_str()},  {"HTTP_PROXY", url.c_str()},
                                           {"https_proxy", url.c_str()}, {"HTTPS_PROXY", url.c_str()},
                                           {"all_proxy", url.c_str()},   {"ALL_PROXY", url.c_str()}};
  Answer("directly");
  ExpectText("directly");
  ExpectSecret(SecureNginx(), "");
  EXPECT_EQ(proxy.Connections(), 0U);
}

// The same proxy takes the same requests when it is named as an argument, so the test above proves something.
TEST_F(Proxy, ExclusionsOfTheEnvironmentDoNotCount) {
  const Tinyproxy proxy;
  const EnvironmentVariable variables[] = {{"no_proxy", "*"}, {"NO_PROXY", "*"}};
  ExpectThrough(proxy.Address());
  EXPECT_EQ(proxy.Requests(1).size(), 1U);
}

}  // namespace
}  // namespace qv::test
