// Certificates of https: the options, and the program against a server that asks for them.
#include <gtest/gtest.h>

#include "fixtures/environment.h"
#include "tests/fixtures/tls_server.h"
#include "tests/tools/options_fixture.h"
#include "tests/tools/process.h"
#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using test::TlsServer;
using testing::Outcome;
using testing::RunTool;
using testing::Words;

class TlsOptions : public testing::OptionsTest {};

TEST_F(TlsOptions, FilesAreTaken) {
  const RunOptions run = Run({"run", "-e", "1", "--server", "https://h", "--ca-file", "ca.pem", "--cert",
                              "me.pem", "--key", "key.pem"});
  EXPECT_EQ(run.caFile, "ca.pem");
  EXPECT_EQ(run.certificateFile, "me.pem");
  EXPECT_EQ(run.keyFile, "key.pem");
  EXPECT_EQ(Download({"download", "u", "--ca-file", "ca.pem"}).caFile, "ca.pem");
}

TEST_F(TlsOptions, VariablesStandInForThem) {
  ::setenv("SCRIPTWELLS_CA_FILE", "ca.pem", 1);
  ::setenv("SCRIPTWELLS_CERT", "me.pem", 1);
  ::setenv("SCRIPTWELLS_KEY", "key.pem", 1);
  const RunOptions run = Run({"run", "-e", "1", "--server", "https://h"});
  EXPECT_EQ(run.caFile + run.certificateFile + run.keyFile, "ca.pemme.pemkey.pem");
}

TEST_F(TlsOptions, KeyNeedsItsCertificate) {
  EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--key", "key.pem"}),
            "--key goes with --cert, whose key it is|scriptwells run --help");
}

// The server closes at what it is asked, so a session is refused; how far the program came is what counts.
class TlsRun : public ::testing::Test {
 protected:
  Outcome At(const TlsServer& server, const Words& more) {
    Words words{"run", "--server", "https://127.0.0.1:" + std::to_string(server.Port()), "--user", "joe",
                "-e",  "1"};
    words.insert(words.end(), more.begin(), more.end());
    return RunTool(words);
  }
  std::string Name(const TlsServer& server) { return "https://127.0.0.1:" + std::to_string(server.Port()); }

  EnvironmentVariable file_{"SSL_CERT_FILE", nullptr};
  EnvironmentVariable directory_{"SSL_CERT_DIR", nullptr};
  EnvironmentVariable bundle_{"CURL_CA_BUNDLE", nullptr};
};

TEST_F(TlsRun, UnknownAuthorityIsToldWithTheOptionForIt) {
  const TlsServer server("127.0.0.1");
  const Outcome outcome = At(server, {});
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err, "scriptwells: cannot reach " + Name(server) +
                             ": SSL certificate problem: self-signed certificate "
                             "(--ca-file FILE names an authority of your own)\n");
}

TEST_F(TlsRun, AuthorityAndCertificateReachTheServer) {
  TlsServer server("127.0.0.1");
  server.WantCertificate();
  EXPECT_EQ(At(server, {"--ca-file", server.CertificateFile()}).exit, 3);
  EXPECT_EQ(server.Connections(), 0);
  At(server, {"--ca-file", server.CertificateFile(), "--cert", server.CertificateFile(), "--key",
              server.KeyFile(), "--timeout", "1"});
  EXPECT_EQ(server.Connections(), 1);
}

TEST_F(TlsRun, FilesAreLookedAtBeforeAnyServerIsAsked) {
  const TlsServer server("127.0.0.1");
  const Outcome outcome = At(server, {"--ca-file", "/nowhere/ca.pem"});
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_EQ(outcome.err,
            "scriptwells: cannot read the authorities' file /nowhere/ca.pem: No such file or directory\n");
}

}  // namespace
}  // namespace qv::cli
