// https: whom the component trusts, and the same exchange over TLS.
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ui.h>

#include <cstdlib>
#include <string>

#include "fixtures/temporary_directory.h"
#include "http_fixture.h"
#include "tls_server.h"

namespace qv::test {
namespace {

constexpr HRESULT kTls = MakeResult(0x80072F8F);

// A private key in PEM that needs a password.
std::string LockedKey() {
  EVP_PKEY* key = EVP_EC_gen("P-256");
  BIO* memory = BIO_new(BIO_s_mem());
  const unsigned char password[] = "secret";
  PEM_write_bio_PrivateKey(memory, key, EVP_aes_128_cbc(), password, 6, nullptr, nullptr);
  char* bytes = nullptr;
  const long size = BIO_get_mem_data(memory, &bytes);
  std::string text(bytes, static_cast<std::size_t>(size));
  BIO_free(memory);
  EVP_PKEY_free(key);
  return text;
}

// Counts what the TLS library asks on the terminal; nothing is ever answered.
class Questions {
 public:
  Questions() : method_(UI_create_method("counts")), before_(UI_get_default_method()) {
    UI_method_set_opener(method_, [](UI*) { return ++count, 0; });
    UI_set_default_method(method_);
    count = 0;
  }
  ~Questions() {
    UI_set_default_method(before_);
    UI_destroy_method(method_);
  }
  Questions(const Questions&) = delete;
  Questions& operator=(const Questions&) = delete;

  static int Count() { return count; }

 private:
  static inline int count = 0;
  UI_METHOD* method_;
  const UI_METHOD* before_;
};

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

TEST_F(HttpTlsTest, AuthorityOfTheOptionsIsTrusted) {
  TlsServer server("127.0.0.1");
  HttpOptions options;
  options.caFile = FromUtf8(server.CertificateFile());
  SetLimits(options);
  server.Answer(RawAnswerText("one"));
  EXPECT_EQ(ReadText(SentTls(server), 3), WideString(u"one"));
}

TEST_F(HttpTlsTest, AuthorityOfTheOptionsIsTheOnlyOne) {
  TlsServer trusted("127.0.0.1");
  TlsServer server("127.0.0.1");
  setenv("SSL_CERT_FILE", server.CertificateFile().c_str(), 1);
  HttpOptions options;
  options.caFile = FromUtf8(trusted.CertificateFile());
  SetLimits(options);
  EXPECT_EQ(OpenTls(NewSession(), server), kTls);
  EXPECT_EQ(ErrorWords().substr(0, 23), "SSL certificate problem");
}

TEST_F(HttpTlsTest, AuthorityThatIsNoFileIsAFailureOfOpen) {
  TlsServer server("127.0.0.1");
  HttpOptions options;
  options.caFile = u"/nowhere/ca.pem";
  SetLimits(options);
  EXPECT_EQ(OpenTls(NewSession(), server), kTls);
  EXPECT_NE(ErrorWords().find("/nowhere/ca.pem"), std::string::npos);
}

// The server has one connection at a time, so another one would have to wait.
TEST_F(HttpTlsTest, KeptConnectionServesTheSameAuthorityOnly) {
  TlsServer server("127.0.0.1");
  TlsServer other("127.0.0.1");
  HttpOptions options;
  options.caFile = FromUtf8(server.CertificateFile());
  SetLimits(options);
  server.Answer(RawAnswerText("one"));
  EXPECT_EQ(ReadText(SentTls(server), 3), WideString(u"one"));
  EXPECT_EQ(OpenTls(NewSession(), server), S_OK);
  options.caFile = FromUtf8(other.CertificateFile());
  options.connectTimeout = 200;
  SetLimits(options);
  EXPECT_EQ(OpenTls(NewSession(), server), HTTP_E_TIMED_OUT);
  EXPECT_EQ(server.Connections(), 1);
}

TEST_F(HttpTlsTest, ClientShowsItsCertificate) {
  TlsServer server("127.0.0.1");
  server.WantCertificate();
  HttpOptions options;
  options.caFile = FromUtf8(server.CertificateFile());
  options.certificateFile = FromUtf8(server.CertificateFile());
  options.keyFile = FromUtf8(server.KeyFile());
  SetLimits(options);
  server.Answer(RawAnswerText("one"));
  EXPECT_EQ(ReadText(SentTls(server), 3), WideString(u"one"));
  EXPECT_EQ(server.Connections(), 1);
}

TEST_F(HttpTlsTest, ClientWithoutCertificateIsRefusedByTheServer) {
  TlsServer server("127.0.0.1");
  server.WantCertificate();
  HttpOptions options;
  options.caFile = FromUtf8(server.CertificateFile());
  SetLimits(options);
  const IHttpSessionPtr session = NewSession();
  EXPECT_EQ(OpenTls(session, server), S_OK) << "TLS 1.3 hears of it with the answer";
  EXPECT_EQ(NewRequest(session)->Send(u"question", u""), HTTP_E_CUT_OFF);
  const std::string words = ErrorWords();
  EXPECT_NE(words.find("certificate required"), std::string::npos) << words;
  EXPECT_EQ(server.Connections(), 0);
}

TEST_F(HttpTlsTest, CertificateWithoutItsKeyIsAFailureOfOpen) {
  TlsServer server("127.0.0.1");
  HttpOptions options;
  options.certificateFile = FromUtf8(server.CertificateFile());
  SetLimits(options);
  EXPECT_EQ(OpenTls(NewSession(), server), kTls);
  EXPECT_NE(ErrorWords(), "<none>");
}

TEST_F(HttpTlsTest, KeyWithoutItsCertificateIsRefused) {
  TlsServer server("127.0.0.1");
  HttpOptions options;
  options.keyFile = FromUtf8(server.KeyFile());
  SetLimits(options);
  EXPECT_EQ(OpenTls(NewSession(), server), E_INVALIDARG);
  EXPECT_EQ(ErrorWords(), "A key needs its certificate");
}

// The TLS library would ask on the terminal.
TEST_F(HttpTlsTest, NobodyIsAskedForThePasswordOfAKey) {
  TlsServer server("127.0.0.1");
  const TemporaryDirectory files;
  HttpOptions options;
  options.certificateFile = FromUtf8(server.CertificateFile());
  options.keyFile = FromUtf8(files.Write("locked.pem", LockedKey()));
  SetLimits(options);
  const Questions questions;
  EXPECT_EQ(OpenTls(NewSession(), server), kTls);
  EXPECT_EQ(questions.Count(), 0);
}

}  // namespace
}  // namespace qv::test
