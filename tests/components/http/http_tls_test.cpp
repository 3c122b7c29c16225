// https: whom the component trusts, and the same exchange over TLS.
#include <cstdlib>
#include <string>

#include "http_fixture.h"
#include "tls_server.h"

namespace qv::test {
namespace {

constexpr HRESULT kTls = MakeResult(0x80072F8F);

class HttpTlsTest : public HttpTest {
 protected:
  // The machine may name a store of its own.
  HttpTlsTest() { ForgetStores(); }
  ~HttpTlsTest() override { ForgetStores(); }

  static void ForgetStores() {
    for (const char* name : {"SSL_CERT_FILE", "SSL_CERT_DIR", "CURL_CA_BUNDLE"}) unsetenv(name);
  }

  static HRESULT OpenTls(const IHttpSessionPtr& session, const TlsServer& server) {
    return session->Open(u"https", u"127.0.0.1", server.Port(), u"", u"", u"");
  }
  static IHttpRequestPtr SentTls(const TlsServer& server) {
    const IHttpSessionPtr session = NewSession();
    EXPECT_EQ(OpenTls(session, server), S_OK) << ErrorWords();
    IHttpRequestPtr request = NewRequest(session);
    EXPECT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
    return request;
  }
};

TEST_F(HttpTlsTest, CertificateThatNobodyVouchesForIsAFailureOfOpen) {
  TlsServer server("127.0.0.1");
  EXPECT_EQ(OpenTls(NewSession(), server), kTls);
  EXPECT_EQ(ErrorWords().substr(0, 23), "SSL certificate problem");
  EXPECT_EQ(server.Received(), "");
}

TEST_F(HttpTlsTest, CertificateForAnotherNameIsAFailureOfOpen) {
  TlsServer server("other.example");
  setenv("SSL_CERT_FILE", server.CertificateFile().c_str(), 1);
  EXPECT_EQ(OpenTls(NewSession(), server), kTls);
  EXPECT_EQ(ErrorWords(),
            "SSL: no alternative certificate subject name matches target host name '127.0.0.1'");
  EXPECT_EQ(server.Received(), "");
}

TEST_F(HttpTlsTest, TrustedServerAnswersAndTheConnectionIsKept) {
  TlsServer server("127.0.0.1");
  setenv("SSL_CERT_FILE", server.CertificateFile().c_str(), 1);
  server.Answer(RawAnswerText("one"));
  server.Answer(RawAnswerText("two"));
  EXPECT_EQ(ReadText(SentTls(server), 3), WideString(u"one"));
  EXPECT_EQ(ReadText(SentTls(server), 3), WideString(u"two"));
  EXPECT_EQ(server.Connections(), 1);
}

TEST_F(HttpTlsTest, StoreOfTheCurlVariableIsHonoured) {
  TlsServer server("127.0.0.1");
  setenv("CURL_CA_BUNDLE", server.CertificateFile().c_str(), 1);
  EXPECT_EQ(OpenTls(NewSession(), server), S_OK) << ErrorWords();
}

TEST_F(HttpTlsTest, StoreThatIsNoFileIsAFailureOfOpen) {
  TlsServer server("127.0.0.1");
  setenv("SSL_CERT_FILE", "/nowhere/store.pem", 1);
  EXPECT_EQ(OpenTls(NewSession(), server), kTls);
  EXPECT_NE(ErrorWords(), "<none>");
}

TEST_F(HttpTlsTest, LargeAnswerArrivesWhole) {
  TlsServer server("127.0.0.1");
  setenv("SSL_CERT_FILE", server.CertificateFile().c_str(), 1);
  const std::string body(1'000'000, 'b');
  server.Answer(RawAnswerText(body));
  EXPECT_EQ(ToUtf8(ReadText(SentTls(server), 1'000'000)), body);
}

TEST_F(HttpTlsTest, BodyThatIsCutShortFails) {
  TlsServer server("127.0.0.1");
  setenv("SSL_CERT_FILE", server.CertificateFile().c_str(), 1);
  server.SayNoFarewell();
  server.Answer("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf");
  const IHttpRequestPtr request = SentTls(server);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(9, &text, &count), MakeResult(0x80072EFE));
  EXPECT_EQ(ErrorWords(), "transfer closed with 5 bytes remaining to read");
}

TEST_F(HttpTlsTest, KeptConnectionThatWasClosedIsReplacedWithoutASignal) {
  TlsServer server("127.0.0.1");
  setenv("SSL_CERT_FILE", server.CertificateFile().c_str(), 1);
  server.SayNoFarewell();  // the connection closes behind the only answer
  server.Answer(RawAnswerText("one"));
  EXPECT_EQ(ReadText(SentTls(server), 3), WideString(u"one"));
  server.Answer(RawAnswerText("two"));
  EXPECT_EQ(ReadText(SentTls(server), 3), WideString(u"two"));
}

}  // namespace
}  // namespace qv::test
