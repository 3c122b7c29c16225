// Phases of real failures of connections.
#include "fixtures/tls_server.h"
#include "qvscriptwells/com_call.h"
#include "tests/face/exchange/call_fixture.h"

namespace scriptwells::test {
namespace {

using qv::test::RawAnswerText;
using qv::test::RawScript;
using qv::test::TlsServer;

constexpr char kEmptyHead[] = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n";

class ConnectionFailure : public CallTest {
 protected:
  static void ExpectStart(const Outcome& outcome, const std::string& start) {
    EXPECT_EQ(outcome.shown.substr(0, start.size()), start) << outcome.shown;
  }
  static std::string TlsUrl(const TlsServer& server) {
    return "https://127.0.0.1:" + std::to_string(server.Port());
  }
  std::string CannotReach() const { return "cannot reach " + server_.Url() + ": "; }
  std::string NoAnswer() const { return "no answer from " + server_.Url() + ": "; }
  std::string BrokeOff() const { return "the answer of " + server_.Url() + " broke off: "; }
};

TEST_F(ConnectionFailure, RefusedPort) {
  std::string url;
  {
    const qv::test::RawServer gone;
    url = gone.Url();
  }
  UseServer(url);
  const Outcome outcome = Open();
  ExpectStart(outcome, "ConnectionError connect: cannot reach " + url + ": ");
  EXPECT_EQ(outcome.details.transport.substr(0, 30), "Failed to connect to 127.0.0.1");
  EXPECT_EQ(outcome.details.text, "Cannot create a soap call.");
  EXPECT_NE(outcome.details.result, 0U);
  EXPECT_EQ(outcome.details.status, 0);
  EXPECT_TRUE(couldNotConnect_);
}

TEST_F(ConnectionFailure, UnknownName) {
  UseServer("http://no-such-host.invalid:8080");
  ExpectStart(Run(), "ConnectionError connect: cannot reach http://no-such-host.invalid:8080: ");
  EXPECT_TRUE(couldNotConnect_);
}

TEST_F(ConnectionFailure, NameThatIsNone) {
  UseServer("http://a b:8080");
  ExpectStart(Run(), "Error address: cannot reach http://a b:8080: ");
  EXPECT_FALSE(couldNotConnect_);
}

TEST_F(ConnectionFailure, ProxyIsNamedWithItsPort) {
  std::string proxy;
  {
    const qv::test::RawServer gone;
    proxy = gone.Address();
  }
  settings_.proxy = proxy;
  UseServer("http://srv.invalid:80", "127.0.0.1");
  ExpectStart(Open(), "ConnectionError connect: cannot reach http://srv.invalid:80 through the proxy " +
                          proxy + ": ");
}

TEST_F(ConnectionFailure, CertificatesThatNobodyTrusts) {
  const TlsServer server;
  UseServer(TlsUrl(server));
  const Outcome outcome = Open();
  ExpectStart(outcome, "ConnectionError TLS: cannot reach " + TlsUrl(server) + ": SSL certificate problem: ");
  EXPECT_EQ(outcome.details.remedy, Remedy::kOwnAuthority);
  EXPECT_EQ(outcome.shown.find("--"), std::string::npos);
  settings_.http.caFile = qv::FromUtf8("/nowhere/ca.pem");
  const Outcome missing = Open();
  ExpectStart(missing, "ConnectionError TLS: ");
  EXPECT_EQ(missing.details.remedy, Remedy::kNone);
}

TEST_F(ConnectionFailure, CertificateOfAnotherName) {
  const TlsServer server("other.example");
  settings_.http.caFile = qv::FromUtf8(server.CertificateFile());
  UseServer(TlsUrl(server));
  const Outcome outcome = Open();
  ExpectStart(outcome, "ConnectionError TLS: ");
  EXPECT_EQ(outcome.details.remedy, Remedy::kNone);
}

TEST_F(ConnectionFailure, ServerThatWantsACertificate) {
  TlsServer server;
  server.WantCertificate();
  settings_.http.caFile = qv::FromUtf8(server.CertificateFile());
  UseServer(TlsUrl(server));
  const Outcome outcome = Open();
  ExpectStart(outcome, "ConnectionError TLS: ");
  EXPECT_EQ(outcome.details.remedy, Remedy::kOwnCertificate);
}

// The server accepts the connection, and then says nothing.
TEST_F(ConnectionFailure, HandshakeThatStalls) {
  server_.Expect(RawScript().Stall());
  settings_.http.connectTimeout = 200;
  UseServer("https://" + server_.Address());
  ExpectStart(Open(), "TimeoutError TLS: cannot reach https://" + server_.Address() + ": ");
}

TEST_F(ConnectionFailure, ServerThatStopsReading) {
  server_.Expect(RawScript().ReadBytes(10).Stall());
  settings_.http.idleTimeout = 200;
  const Outcome outcome = Observed(Purpose::kExecute, [&] {
    qv::Variant answer;
    return model_->Execute(u"JavaScript", qv::FromUtf8(std::string(std::size_t{16} << 20, 'x')), nullptr,
                           &answer);
  });
  ExpectStart(outcome, "TimeoutError send: " + NoAnswer());
}

TEST_F(ConnectionFailure, Silence) {
  server_.Expect(RawScript().ReadRequest().Stall());
  settings_.http.idleTimeout = 200;
  ExpectStart(Run(), "TimeoutError wait: " + NoAnswer());
  EXPECT_FALSE(couldNotConnect_);
}

TEST_F(ConnectionFailure, ConnectionThatIsClosedOrReset) {
  server_.Expect(RawScript().ReadRequest().Close());
  ExpectStart(Run(), "ConnectionError wait: " + NoAnswer() + "Empty reply from server");
  server_.Expect(RawScript().ReadRequest().Reset());
  ExpectStart(Run(), "ConnectionError wait: " + NoAnswer());
}

TEST_F(ConnectionFailure, AnswerThatBreaksOff) {
  server_.Expect(RawScript().Reply(kEmptyHead).Write("<soap").Close());
  const Outcome cut = Run();
  ExpectStart(cut,
              "ConnectionError receive: " + BrokeOff() + "transfer closed with 95 bytes remaining to read");
  EXPECT_EQ(cut.details.status, 200);
  server_.Expect(RawScript().Reply("HTTP/1.1 200 OK\r\nContent-").Close());
  ExpectStart(Run(), "ConnectionError receive: " + NoAnswer());
}

TEST_F(ConnectionFailure, AnswerThatDrips) {
  server_.Expect(RawScript().Reply(kEmptyHead).WriteByteByByte("<soap").Stall());
  settings_.http.minBytesPerSecond = 1000;
  settings_.http.rateWindow = 200;
  ExpectStart(Run(), "TimeoutError receive: " + BrokeOff());
}

TEST_F(ConnectionFailure, TotalTime) {
  server_.Expect(RawScript().ReadRequest().Stall());
  settings_.http.totalTimeout = 200;
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.shown, "TimeoutError wait: " + NoAnswer() + "the time that the call may take is over");
  EXPECT_EQ(outcome.details.remedy, Remedy::kTotalTime);
}

TEST_F(ConnectionFailure, AnswerThatIsNoHttp) {
  server_.Expect(RawScript().Reply("SSH-2.0-OpenSSH\r\n\r\n"));
  ExpectStart(Run(), "Error answer: " + NoAnswer());
}

TEST_F(ConnectionFailure, AnswerThatIsTooLong) {
  Answer({ScriptAnswer(std::string(std::size_t{2} << 20, 'x'))});
  settings_.http.maxBodyBytes = std::int64_t{1} << 20;
  EXPECT_EQ(Run().shown, "Error answer: the answer of " + server_.Url() + " is longer than 1 MB");
}

TEST_F(ConnectionFailure, AnswersOfOtherServers) {
  Answer(
      {RawAnswerText("<html>hello</html>"), StatusAnswer("413 Too Large", "too large"), SessionAnswer("u1")});
  EXPECT_EQ(Open().shown, "Error answer: The respone that arrived is not valid (HTTP status 200; is " +
                              server_.Url() + " a Scriptwells server?)");
  const Outcome tooLong = Run();
  EXPECT_EQ(tooLong.shown, "Error answer: the server found the request too long (HTTP status 413)");
  EXPECT_EQ(tooLong.details.status, 413);
  EXPECT_EQ(Open().shown, "ok");
}

TEST_F(ConnectionFailure, RefusedSession) {
  const std::string refusal =
      FaultAnswer("<errorCode>1003</errorCode><description>wrong password</description>");
  Answer({refusal, refusal, refusal});
  const Outcome outcome = Open();
  EXPECT_EQ(outcome.shown, "SessionError session: wrong password");
  EXPECT_EQ(outcome.details.number, 1003U);
  EXPECT_EQ(outcome.details.result, 0x800403EBU);
  EXPECT_EQ(outcome.details.text, "wrong password");
  EXPECT_EQ(outcome.details.remedy, Remedy::kNone);
  settings_.hasUser = false;
  EXPECT_EQ(Open().details.remedy, Remedy::kCredentials);
  EXPECT_EQ(Close().shown, "SessionError session: wrong password");
}

TEST_F(ConnectionFailure, FaultOfAScriptHasNumberAndPlace) {
  Answer(
      {FaultAnswer("<errorCode>5</errorCode><description>oops</description><source>script, line 3</source>"),
       FaultAnswer("<description>oops</description>")});
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.shown, "ScriptError script: oops");
  EXPECT_EQ(outcome.details.number, 5U);
  EXPECT_EQ(outcome.details.line, 3);
  EXPECT_EQ(outcome.details.status, 200);
  const Outcome plain = Run();
  EXPECT_EQ(plain.shown, "ScriptError script: oops");
  EXPECT_EQ(plain.details.number, std::nullopt);
  EXPECT_EQ(plain.details.line, 0);
}

}  // namespace
}  // namespace scriptwells::test
