// Certificates of a real web server, at the component and at the connection model.
#include <memory>

#include "client_fixture.h"
#include "nginx.h"
#include "qvscriptwells/create_objects.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

constexpr HRESULT kTls = MakeResult(0x80072F8F);
constexpr char kNoSoapCall[] = "0x80020009 Cannot create a soap call.";

class Tls : public HttpTest {
 protected:
  const Nginx& Serve(CertificateKind kind) {
    const CertificateFiles files = certificates_.Make(kind);
    nginx_ = std::make_unique<Nginx>(&files);
    return *nginx_;
  }
  HRESULT OpenTls(const IHttpSessionPtr& session, const WideString& name = u"127.0.0.1") const {
    return session->Open(u"https", name, nginx_->Port(), u"", u"", u"");
  }
  void ExpectRefused(CertificateKind kind, const std::string& words) {
    Serve(kind);
    EXPECT_EQ(OpenTls(NewSession()), kTls);
    EXPECT_EQ(ErrorWords(), words);
    EXPECT_EQ(nginx_->Requests(0), "");
  }

  PlainEnvironment environment_;
  Certificates certificates_;
  std::unique_ptr<Nginx> nginx_;
};

TEST_F(Tls, GoodCertificateOpensForAddressAndName) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  Serve(CertificateKind::kGood).Offer("f.txt", "secret");
  EXPECT_EQ(OpenTls(NewSession(), u"localhost"), S_OK) << ErrorWords();
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(OpenTls(session), S_OK) << ErrorWords();
  const IHttpRequestPtr request = NewRequest(session, "GET", "/files/f.txt");
  ASSERT_EQ(request->Send(u"", u""), S_OK) << ErrorWords();
  EXPECT_EQ(Header(request, "StatusCode"), "200");
  EXPECT_EQ(ReadText(request, 6), WideString(u"secret"));
  EXPECT_EQ(Header(request, "Content-Disposition"), "attachment; filename=f.txt");
}

TEST_F(Tls, UnknownAuthorityIsRefused) {
  ExpectRefused(CertificateKind::kGood, "SSL certificate problem: unable to get local issuer certificate");
}

TEST_F(Tls, WrongNameIsRefused) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  ExpectRefused(CertificateKind::kWrongName,
                "SSL: no alternative certificate subject name matches target host name '127.0.0.1'");
}

TEST_F(Tls, ExpiredCertificateIsRefused) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  ExpectRefused(CertificateKind::kExpired, "SSL certificate problem: certificate has expired");
}

TEST_F(Tls, SelfSignedCertificateIsRefused) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  ExpectRefused(CertificateKind::kSelfSigned, "SSL certificate problem: self-signed certificate");
}

TEST_F(Tls, PlainServerIsRefused) {
  nginx_ = std::make_unique<Nginx>(nullptr);
  EXPECT_EQ(OpenTls(NewSession()), kTls);
}

TEST_F(Tls, FileGoesUpOverTls) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  Serve(CertificateKind::kGood);
  const TemporaryDirectory files;
  std::string content;
  while (content.size() < 3'000'000) content += std::to_string(content.size()) + ",";
  const std::string name = files.Write("f.bin", content);
  const IHttpSessionPtr session = NewSession();
  ASSERT_EQ(OpenTls(session), S_OK) << ErrorWords();
  const IHttpRequestPtr request = NewRequest(session, "POST", "/take");
  ASSERT_EQ(request->SendFile(Wide(name)), S_OK) << ErrorWords();
  EXPECT_EQ(ReadText(request, 5), WideString(u"taken"));
  EXPECT_TRUE(nginx_->Taken() == content) << nginx_->Taken().size();
}

// The development service behind nginx, which speaks TLS for it.
class SecureService : public ClientTest {
 protected:
  void ServeBehind(CertificateKind kind) {
    const CertificateFiles files = certificates_.Make(kind);
    nginx_ = std::make_unique<Nginx>(&files, static_cast<std::uint16_t>(service_->Port()));
    ASSERT_EQ(ClientTest::SetServer(FromUtf8(nginx_->Url())), "ok");
  }
  // Nothing arrives; with the service's own address the model works.
  void ExpectNoSoapCall(CertificateKind kind) {
    ServeBehind(kind);
    EXPECT_EQ(Open(), kNoSoapCall);
    ASSERT_EQ(model_->SetUSID(u"s1"), S_OK);
    EXPECT_EQ(Run(u"1"), kNoSoapCall);
    EXPECT_EQ(Close(), kNoSoapCall);
    EXPECT_EQ(nginx_->Requests(0), "");
    ASSERT_EQ(SetServer(FromUtf8(service_->Url())), "ok");
    EXPECT_EQ(Open(), "ok");
    EXPECT_EQ(Run(u"'next'"), "VT_BSTR next");
  }

  PlainEnvironment environment_;
  Certificates certificates_;
  std::unique_ptr<Nginx> nginx_;
};

TEST_F(SecureService, SessionAndScriptsGoOverTls) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  ServeBehind(CertificateKind::kGood);
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(HostKnows().substr(0, 5), "open ");
  EXPECT_EQ(Run(u"parameters.a + 1", {{u"a", Variant::FromInt(41)}}), "VT_INT 42");
  EXPECT_EQ(Run(u"'\u00FC'"), "VT_BSTR \\u00FC");
  EXPECT_EQ(Run(u"throw new ScriptError(5, 'five')"), "0x80040005 five");
  EXPECT_EQ(Run(u"'x'.repeat(1000000).length"), "VT_INT 1000000");
  EXPECT_EQ(Close(), "ok");
}

TEST_F(SecureService, UnknownAuthorityIsNoSoapCall) {
  ExpectNoSoapCall(CertificateKind::kGood);
}

TEST_F(SecureService, WrongNameIsNoSoapCall) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  ExpectNoSoapCall(CertificateKind::kWrongName);
}

TEST_F(SecureService, ExpiredCertificateIsNoSoapCall) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  ExpectNoSoapCall(CertificateKind::kExpired);
}

TEST_F(SecureService, SelfSignedCertificateIsNoSoapCall) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  ExpectNoSoapCall(CertificateKind::kSelfSigned);
}

class SecureTransfer : public TransferTest {
 protected:
  Certificates certificates_;
};

TEST_F(SecureTransfer, FileComesAndGoesOverTls) {
  const EnvironmentVariable store("SSL_CERT_FILE", certificates_.Authority().c_str());
  const CertificateFiles good = certificates_.Make(CertificateKind::kGood);
  const Nginx nginx(&good, server_.Port());
  nginx.Offer("f.txt", "down");
  UseServer(nginx.Url());
  EXPECT_EQ(Download(nginx.Url() + "/files/f.txt", Wide(Target())), "ok");
  EXPECT_EQ(files_.Read("target/f.txt"), "down");
  server_.Expect(RawScript().ReadRequest().Write(ScriptAnswer(nginx.Url() + "/take?ticket=T1")).Close());
  server_.Expect(RawScript().ReadRequest().Write(ScriptAnswer("arrived")).Close());
  EXPECT_EQ(RunWith(CreateAttachedFile(Wide(files_.Write("here/f.bin", "up")))), "VT_BSTR arrived");
  EXPECT_EQ(nginx.Taken(), "up");
}

TEST_F(SecureTransfer, DownloadFromAnUntrustedServerIsAFailureOfOpen) {
  const CertificateFiles good = certificates_.Make(CertificateKind::kGood);
  const Nginx nginx(&good);
  nginx.Offer("f.txt", "down");
  const Tree before = AllFiles();
  EXPECT_EQ(Download(nginx.Url() + "/files/f.txt", Wide(Target())).substr(0, 10), "0x80004003");
  EXPECT_EQ(AllFiles(), before);
  EXPECT_EQ(nginx.Requests(0), "");
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(SecureTransfer, UploadToAnUntrustedServerIsAnHttpProblem) {
  const CertificateFiles good = certificates_.Make(CertificateKind::kGood);
  const Nginx nginx(&good);
  server_.Expect(RawScript().ReadRequest().Write(ScriptAnswer(nginx.Url() + "/take?ticket=T1")));
  EXPECT_EQ(RunWith(CreateAttachedFile(Wide(files_.Write("here/f.bin", "up")))),
            "0x80020009 Unknown Http problem.");
  EXPECT_EQ(nginx.Taken(), "(0 files)");
  CloseKeptConnections();
  ExpectNextUploadWorks();
  ExpectNoDescriptorLeft();
}

}  // namespace
}  // namespace qv::test
