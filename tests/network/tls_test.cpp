// Certificates of a real web server, at the component and at the connection model.
#include <memory>

#include "client_fixture.h"
#include "nginx.h"
#include "qvscriptwells/create_objects.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

constexpr char kNoSoapCall[] = "0x80020009 Cannot create a soap call.";

class Tls : public HttpTest {
 protected:
  // A POST or GET over TLS; nothing was sent yet.
  static IHttpRequestPtr RequestTo(const SecureNginx& nginx, const std::string& verb,
                                   const std::string& path) {
    const IHttpSessionPtr session = NewSession();
    EXPECT_EQ(session->Open(u"https", u"127.0.0.1", nginx->Port(), u"", u"", u""), S_OK) << ErrorWords();
    return NewRequest(session, verb, path);
  }

  PlainEnvironment environment_;
};

TEST_F(Tls, GoodCertificateOpensForAddressAndName) {
  const SecureNginx nginx;
  nginx.Trust();
  nginx->Offer("f.txt", "secret");
  EXPECT_EQ(OpenAt("https", "localhost", nginx->Port()), S_OK) << ErrorWords();
  const IHttpRequestPtr request = RequestTo(nginx, "GET", "/files/f.txt");
  ASSERT_EQ(request->Send(u"", u""), S_OK) << ErrorWords();
  EXPECT_EQ(Header(request, "StatusCode"), "200");
  EXPECT_EQ(ReadText(request, 6), "secret");
  EXPECT_EQ(Header(request, "Content-Disposition"), "attachment; filename=f.txt");
}

TEST_F(Tls, BadCertificateIsRefused) {
  const struct {
    CertificateKind kind;
    bool trusted;  // whether its authority is
    const char* words;
  } rows[] = {
      {CertificateKind::kGood, false, "SSL certificate problem: unable to get local issuer certificate"},
      {CertificateKind::kWrongName, true,
       "SSL: no alternative certificate subject name matches target host name '127.0.0.1'"},
      {CertificateKind::kExpired, true, "SSL certificate problem: certificate has expired"},
      {CertificateKind::kSelfSigned, true, "SSL certificate problem: self-signed certificate"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.words);
    const SecureNginx nginx(row.kind);
    if (row.trusted) nginx.Trust();
    EXPECT_EQ(OpenAt("https", "127.0.0.1", nginx->Port()), kTls);
    EXPECT_EQ(ErrorWords(), row.words);
    EXPECT_EQ(nginx->Requests(0), "");
  }
}

TEST_F(Tls, PlainServerIsRefused) {
  const Nginx nginx;
  EXPECT_EQ(OpenAt("https", "127.0.0.1", nginx.Port()), kTls);
}

TEST_F(Tls, FileGoesUpOverTls) {
  const SecureNginx nginx;
  nginx.Trust();
  const TemporaryDirectory files;
  std::string content;
  while (content.size() < 3'000'000) content += std::to_string(content.size()) + ",";
  const IHttpRequestPtr request = RequestTo(nginx, "POST", "/take");
  ASSERT_EQ(request->SendFile(Wide(files.Write("f.bin", content))), S_OK) << ErrorWords();
  EXPECT_EQ(ReadText(request, 5), "taken");
  EXPECT_TRUE(nginx->Taken() == content) << nginx->Taken().size();
}

// The development service, for which nginx speaks TLS.
class SecureService : public ClientTest {
 protected:
  void ServeWith(CertificateKind kind) {
    nginx_ = std::make_unique<SecureNginx>(kind, static_cast<std::uint16_t>(service_->Port()));
    ASSERT_EQ(SetServer(FromUtf8((*nginx_)->Url())), "ok");
  }

  PlainEnvironment environment_;
  std::unique_ptr<SecureNginx> nginx_;
};

TEST_F(SecureService, SessionAndScriptsGoOverTls) {
  ServeWith(CertificateKind::kGood);
  nginx_->Trust();
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(HostKnows().substr(0, 5), "open ");
  EXPECT_EQ(Run(u"parameters.a + 1", {{u"a", Variant::FromInt(41)}}), "VT_INT 42");
  EXPECT_EQ(Run(u"'\u00FC'"), "VT_BSTR \\u00FC");
  EXPECT_EQ(Run(u"throw new ScriptError(5, 'five')"), "0x80040005 five");
  EXPECT_EQ(Run(u"'x'.repeat(1000000).length"), "VT_INT 1000000");
  EXPECT_EQ(Close(), "ok");
}

// Nothing arrives; with the service's own address the model works.
TEST_F(SecureService, BadCertificateIsNoSoapCall) {
  const std::pair<CertificateKind, bool> rows[] = {{CertificateKind::kGood, false},
                                                   {CertificateKind::kWrongName, true},
                                                   {CertificateKind::kExpired, true},
                                                   {CertificateKind::kSelfSigned, true}};
  for (const auto& [kind, trusted] : rows) {
    SCOPED_TRACE(static_cast<int>(kind));
    ServeWith(kind);
    if (trusted) nginx_->Trust();
    EXPECT_EQ(Open(), kNoSoapCall);
    ASSERT_EQ(model_->SetUSID(u"s1"), S_OK);
    EXPECT_EQ(Run(u"1"), kNoSoapCall);
    EXPECT_EQ(Close(), kNoSoapCall);
    EXPECT_EQ((*nginx_)->Requests(0), "");
    ASSERT_EQ(SetServer(FromUtf8(service_->Url())), "ok");
    EXPECT_EQ(Open(), "ok");
    EXPECT_EQ(Run(u"'next'"), "VT_BSTR next");
  }
}

class SecureTransfer : public TransferTest {};

TEST_F(SecureTransfer, FileComesAndGoesOverTls) {
  const SecureNginx nginx(CertificateKind::kGood, server_.Port());
  nginx.Trust();
  nginx->Offer("f.txt", "down");
  UseServer(nginx->Url());
  EXPECT_EQ(Download(nginx->Url() + "/files/f.txt", Wide(Target())), "ok");
  EXPECT_EQ(files_.Read("target/f.txt"), "down");
  ReplyAndClose(ScriptAnswer(nginx->Url() + "/take?ticket=T1"));
  ReplyAndClose(ScriptAnswer("arrived"));
  EXPECT_EQ(RunWith(File("up")), "VT_BSTR arrived");
  EXPECT_EQ(nginx->Taken(), "up");
}

TEST_F(SecureTransfer, DownloadFromAnUntrustedServerIsAFailureOfOpen) {
  const SecureNginx nginx;
  nginx->Offer("f.txt", "down");
  const Tree before = AllFiles();
  EXPECT_EQ(Download(nginx->Url() + "/files/f.txt", Wide(Target())).substr(0, 10), "0x80004003");
  EXPECT_EQ(AllFiles(), before);
  EXPECT_EQ(nginx->Requests(0), "");
  ExpectDownloadsLeaveNothing();
}

TEST_F(SecureTransfer, UploadToAnUntrustedServerIsAnHttpProblem) {
  const SecureNginx nginx;
  Reply(ScriptAnswer(nginx->Url() + "/take?ticket=T1"));
  EXPECT_EQ(RunWith(File("up")), "0x80020009 Unknown Http problem.");
  EXPECT_EQ(nginx->Taken(), "(0 files)");
  ExpectUploadsLeaveNothing();
}

}  // namespace
}  // namespace qv::test
