// https: whom the component trusts, and the same exchange over TLS.
#include <openssl/ui.h>

#include <string>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/tls_server.h"
#include "http_fixture.h"

namespace qv::test {
namespace {

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
  static HRESULT OpenTls(const TlsServer& server) { return OpenAt("https", "127.0.0.1", server.Port()); }
  HRESULT OpenTls() const { return OpenTls(tls_); }
  // A request of an open session that was sent.
  IHttpRequestPtr SentTls() const {
    const IHttpSessionPtr session = NewSession();
    EXPECT_EQ(session->Open(u"https", u"127.0.0.1", tls_.Port(), u"", u"", u""), S_OK) << ErrorWords();
    IHttpRequestPtr request = NewRequest(session);
    EXPECT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
    return request;
  }
  void ExpectTlsText(const std::string& text) {
    tls_.Answer(RawAnswerText(text));
    EXPECT_EQ(ReadText(SentTls(), static_cast<std::int32_t>(text.size())), text);
  }
  // Nobody trusts the server's certificate.
  void ExpectUntrusted() const {
    EXPECT_EQ(OpenTls(), kTls);
    EXPECT_EQ(ErrorWords().substr(0, 23), "SSL certificate problem");
  }
  void TrustByEnvironment() const { store_.Set(tls_.CertificateFile().c_str()); }
  void TrustByOptions() { SetFile(&HttpOptions::caFile, tls_.CertificateFile()); }
  void SetFile(WideString HttpOptions::*file, const std::string& path) {
    options_.*file = FromUtf8(path);
    SetLimits(options_);
  }

  TlsServer tls_;
  HttpOptions options_;
  // The machine may name stores.
  EnvironmentVariable store_{"SSL_CERT_FILE", nullptr};
  EnvironmentVariable directory_{"SSL_CERT_DIR", nullptr};
  EnvironmentVariable bundle_{"CURL_CA_BUNDLE", nullptr};
};

TEST_F(HttpTlsTest, CertificateThatNobodyVouchesForIsAFailureOfOpen) {
  ExpectUntrusted();
  EXPECT_EQ(tls_.Received(), "");
}

TEST_F(HttpTlsTest, CertificateForAnotherNameIsAFailureOfOpen) {
  TlsServer other("other.example");
  store_.Set(other.CertificateFile().c_str());
  EXPECT_EQ(OpenTls(other), kTls);
  EXPECT_EQ(ErrorWords(),
            "SSL: no alternative certificate subject name matches target host name '127.0.0.1'");
  EXPECT_EQ(other.Received(), "");
}

TEST_F(HttpTlsTest, TrustedServerAnswersAndTheConnectionIsKept) {
  TrustByEnvironment();
  tls_.Answer(RawAnswerText("one"));
  tls_.Answer(RawAnswerText("two"));
  EXPECT_EQ(ReadText(SentTls(), 3), "one");
  EXPECT_EQ(ReadText(SentTls(), 3), "two");
  EXPECT_EQ(tls_.Connections(), 1);
}

TEST_F(HttpTlsTest, StoreOfTheCurlVariableIsHonoured) {
  bundle_.Set(tls_.CertificateFile().c_str());
  EXPECT_EQ(OpenTls(), S_OK) << ErrorWords();
}

TEST_F(HttpTlsTest, StoreThatIsNoFileIsAFailureOfOpen) {
  store_.Set("/nowhere/store.pem");
  EXPECT_EQ(OpenTls(), kTls);
  EXPECT_NE(ErrorWords(), "<none>");
}

TEST_F(HttpTlsTest, LargeAnswerArrivesWhole) {
  TrustByEnvironment();
  ExpectTlsText(std::string(1'000'000, 'b'));
}

TEST_F(HttpTlsTest, BodyThatIsCutShortFails) {
  TrustByEnvironment();
  tls_.SayNoFarewell();
  tls_.Answer(SizedText(9, "half"));
  EXPECT_EQ(Read(SentTls(), 9), kCutOff);
  EXPECT_EQ(ErrorWords(), "transfer closed with 5 bytes remaining to read");
}

TEST_F(HttpTlsTest, KeptConnectionThatWasClosedIsReplacedWithoutASignal) {
  TrustByEnvironment();
  tls_.SayNoFarewell();  // the connection closes after the only answer
  ExpectTlsText("one");
  ExpectTlsText("two");
}

TEST_F(HttpTlsTest, AuthorityOfTheOptionsIsTrusted) {
  TrustByOptions();
  ExpectTlsText("one");
}

TEST_F(HttpTlsTest, AuthorityOfTheOptionsIsTheOnlyOne) {
  const TlsServer trusted;
  TrustByEnvironment();
  SetFile(&HttpOptions::caFile, trusted.CertificateFile());
  ExpectUntrusted();
}

TEST_F(HttpTlsTest, AuthorityThatIsNoFileIsAFailureOfOpen) {
  SetFile(&HttpOptions::caFile, "/nowhere/ca.pem");
  EXPECT_EQ(OpenTls(), kTls);
  EXPECT_NE(ErrorWords().find("/nowhere/ca.pem"), std::string::npos);
}

// The server has one connection at a time, so another one would have to wait.
TEST_F(HttpTlsTest, KeptConnectionServesTheSameAuthorityOnly) {
  const TlsServer other;
  TrustByOptions();
  ExpectTlsText("one");
  EXPECT_EQ(OpenTls(), S_OK);
  options_.connectTimeout = 200;
  SetFile(&HttpOptions::caFile, other.CertificateFile());
  EXPECT_EQ(OpenTls(), HTTP_E_TIMED_OUT);
  EXPECT_EQ(tls_.Connections(), 1);
}

TEST_F(HttpTlsTest, ClientShowsItsCertificate) {
  tls_.WantCertificate();
  TrustByOptions();
  SetFile(&HttpOptions::certificateFile, tls_.CertificateFile());
  SetFile(&HttpOptions::keyFile, tls_.KeyFile());
  ExpectTlsText("one");
  EXPECT_EQ(tls_.Connections(), 1);
}

TEST_F(HttpTlsTest, ClientWithoutCertificateIsRefusedByTheServer) {
  tls_.WantCertificate();
  TrustByOptions();
  const IHttpSessionPtr session = NewSession();
  EXPECT_EQ(session->Open(u"https", u"127.0.0.1", tls_.Port(), u"", u"", u""), S_OK)
      << "TLS 1.3 hears of it with the answer";
  EXPECT_EQ(NewRequest(session)->Send(u"question", u""), HTTP_E_CUT_OFF);
  const std::string words = ErrorWords();
  EXPECT_NE(words.find("certificate required"), std::string::npos) << words;
  EXPECT_EQ(tls_.Connections(), 0);
}

TEST_F(HttpTlsTest, CertificateWithoutItsKeyIsAFailureOfOpen) {
  SetFile(&HttpOptions::certificateFile, tls_.CertificateFile());
  EXPECT_EQ(OpenTls(), kTls);
  EXPECT_NE(ErrorWords(), "<none>");
}

TEST_F(HttpTlsTest, KeyWithoutItsCertificateIsRefused) {
  SetFile(&HttpOptions::keyFile, tls_.KeyFile());
  EXPECT_EQ(OpenTls(), E_INVALIDARG);
  EXPECT_EQ(ErrorWords(), "A key needs its certificate");
}

// The TLS library would ask on the terminal.
TEST_F(HttpTlsTest, NobodyIsAskedForThePasswordOfAKey) {
  const TemporaryDirectory files;
  SetFile(&HttpOptions::certificateFile, tls_.CertificateFile());
  SetFile(&HttpOptions::keyFile, files.Write("locked.pem", LockedKey()));
  const Questions questions;
  EXPECT_EQ(OpenTls(), kTls);
  EXPECT_EQ(questions.Count(), 0);
}

}  // namespace
}  // namespace qv::test
