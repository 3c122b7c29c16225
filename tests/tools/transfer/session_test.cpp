// `scriptwells session open` and `close`, and certificates of https.
#include "fixtures/environment.h"
#include "fixtures/tls_server.h"
#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;
using test::TlsServer;

// The only line of a command that succeeds.
std::string LineOf(const Outcome& outcome) {
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  return outcome.out.substr(0, outcome.out.find('\n'));
}

TEST(Session, SeveralCommandsUseIt) {
  const ServeProcess service;
  const TemporaryDirectory folder;
  const std::string usid = LineOf(service.Joe("session open").Run());
  EXPECT_FALSE(usid.empty());
  EXPECT_EQ(service.Count("CloseUserSession"), 0);
  const auto used = [&](const std::string& line, const Words& more = {}) {
    return Tool(line, more).Set("SCRIPTWELLS_SERVER", service.Url()).Set("SCRIPTWELLS_USID", usid).Run();
  };
  const std::string url = LineOf(used("run -e", {"publish('out.txt', 'text')"}));
  EXPECT_EQ(LineOf(used("download " + url + " " + folder.Path())), folder.Path("out.txt"));
  EXPECT_EQ(LineOf(used("session close")), "");
  EXPECT_EQ(service.Count("CreateUserSession"), 1);
  EXPECT_EQ(service.Count("CloseUserSession"), 1);
  used("session close").Fails(1, "the session was not closed: The session does not exist on this service.");
}

class SessionCommandTest : public TransferServer {
 protected:
  Tool At(const std::string& verb) const { return Tool("session " + verb + " --server " + Origin()); }
};

TEST_F(SessionCommandTest, IdIsPrintedAndTheSessionStaysOpen) {
  Answer({SessionOpened()});
  EXPECT_EQ(LineOf(At("open --user joe").Run()), "u1");
  EXPECT_TRUE(WasSent("#CreateUserSession\r\n"));
  EXPECT_FALSE(WasClosed());
  Answer({SessionOpened()});
  EXPECT_EQ(At("open --json").Run().out, "{\"usid\":\"u1\"}\n");
  Answer({SessionClosed()});
  EXPECT_EQ(At("close --usid u1 --json").Run().out, "{\"closed\":true}\n");
  EXPECT_TRUE(WasClosed());
  EXPECT_TRUE(WasSent("u1"));
  RunTool("session close --server http://127.0.0.1:1 --usid x")
      .FailsLike(3, "cannot reach http://127.0.0.1:1: ");
}

TEST_F(SessionCommandTest, SessionIsClosedIfItsIdCannotBePrinted) {
  AnswerCalls({});
  At("open").WriteTo("/dev/full").Fails(6, "cannot write the session's id to standard output");
  EXPECT_TRUE(WasClosed());
  Answer({test::RawAnswerText("<soap:Envelope><soap:Body><CreateUserSessionResponse><CreateUserSessionResult>"
                              "a\x7f</CreateUserSessionResult></CreateUserSessionResponse></soap:Body>"
                              "</soap:Envelope>"),
          SessionClosed()});
  At("open").Fails(7,
                   "answer not understood: the server's session id holds a character that no header carries");
  EXPECT_TRUE(WasClosed());
}

// The server closes the connection after the request, so that no session is opened.
class TlsSession : public ::testing::Test {
 protected:
  static Outcome At(const TlsServer& server, const std::string& options = "") {
    return RunTool("run -e 1 --user joe --server " + UrlOf(server) + " " + options);
  }
  static std::string UrlOf(const TlsServer& server) {
    return "https://127.0.0.1:" + std::to_string(server.Port());
  }

  EnvironmentVariable file_{"SSL_CERT_FILE", nullptr};
  EnvironmentVariable directory_{"SSL_CERT_DIR", nullptr};
  EnvironmentVariable bundle_{"CURL_CA_BUNDLE", nullptr};
  TlsServer server_{"127.0.0.1"};
};

TEST_F(TlsSession, UnknownAuthorityIsReportedWithTheOption) {
  At(server_).Fails(3,
                    "cannot reach " + UrlOf(server_) +
                        ": SSL certificate problem: self-signed certificate (--ca-file FILE names your own "
                        "authority)");
  At(server_, "--ca-file /nowhere/ca.pem")
      .Fails(6, "cannot read the authorities' file /nowhere/ca.pem: No such file or directory");
}

TEST_F(TlsSession, AuthorityAndCertificateAreUsed) {
  server_.WantCertificate();
  const std::string authority = "--ca-file " + server_.CertificateFile();
  EXPECT_EQ(At(server_, authority).exit, 3);
  EXPECT_EQ(server_.Connections(), 0);
  At(server_,
     authority + " --cert " + server_.CertificateFile() + " --key " + server_.KeyFile() + " --timeout 1");
  EXPECT_EQ(server_.Connections(), 1);
}

}  // namespace
}  // namespace qv::cli
