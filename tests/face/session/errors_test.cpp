// Every phase of an error, with a real failure. The rows are those of docs/guide/errors.md.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <typeinfo>

#include "face/session/session_fixture.h"
#include "fixtures/raw_server.h"
#include "fixtures/tls_server.h"

namespace scriptwells {
namespace {

using std::chrono::milliseconds;
using test::SessionTest;

// "ConnectionError connect: cannot reach ..."; "no error" if there was none.
std::string Shown(const std::function<void()>& act) {
  const auto shown = [](const char* name, const Error& error) {
    return std::string(name) + " " + ToString(error.phase()) + ": " + error.message();
  };
  try {
    act();
    return "no error";
  } catch (const ConnectionError& error) {
    return shown("ConnectionError", error);
  } catch (const TimeoutError& error) {
    return shown("TimeoutError", error);
  } catch (const SessionError& error) {
    return shown("SessionError", error);
  } catch (const ScriptError& error) {
    return shown("ScriptError", error);
  } catch (const CancelledError& error) {
    return shown("CancelledError", error);
  } catch (const ConversionError& error) {
    return shown("ConversionError", error);
  } catch (const Error& error) {
    return shown("Error", error);
  }
}

void ExpectStart(const std::string& text, const std::string& start) {
  EXPECT_EQ(text.substr(0, start.size()), start) << text;
}

std::string OpenAt(const std::string& url, const Options& options = {}) {
  return Shown([&] { Session(url, {"joe", "secret"}, options); });
}

std::string ClosedPort() {
  std::uint16_t port = 0;
  {
    const qv::test::RawServer server;
    port = server.Port();
  }
  return "http://127.0.0.1:" + std::to_string(port);
}

constexpr char kPlainHead[] = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 100\r\n\r\n";

TEST(Errors, OfAddresses) {
  EXPECT_EQ(OpenAt("nowhere"), "Error address: server 'nowhere' does not begin with http:// or https://");
}

TEST(Errors, OfConnecting) {
  const std::string url = ClosedPort();
  ExpectStart(OpenAt(url), "ConnectionError connect: cannot reach " + url + ": ");
  ExpectStart(OpenAt("http://no-such-host.invalid"),
              "ConnectionError connect: cannot reach http://no-such-host.invalid:80: ");
}

TEST(Errors, OfTls) {
  const qv::test::TlsServer server("127.0.0.1");
  const std::string url = "https://127.0.0.1:" + std::to_string(server.Port());
  ExpectStart(OpenAt(url), "ConnectionError TLS: cannot reach " + url + ": ");
  try {
    Session(url, {"joe"});
  } catch (const Error& error) {
    EXPECT_EQ(error.remedy(), Remedy::kOwnAuthority);
    EXPECT_NE(std::string(error.what()).find("Options::authorities"), std::string::npos);
  }
}

TEST(Errors, OfSilence) {
  qv::test::RawServer server;
  server.Expect(qv::test::RawScript().ReadRequest().Stall());
  Options options;
  options.silenceTimeout = milliseconds(100);
  ExpectStart(OpenAt(server.Url(), options), "TimeoutError wait: no answer from " + server.Url() + ": ");
}

TEST(Errors, OfASlowAnswer) {
  qv::test::RawServer server;
  server.Expect(qv::test::RawScript().Reply(kPlainHead).Write("<soap").Stall());
  Options options;
  options.silenceTimeout = milliseconds(100);
  ExpectStart(OpenAt(server.Url(), options),
              "TimeoutError receive: the answer of " + server.Url() + " broke off: ");
}

TEST(Errors, OfConnectionsThatBreak) {
  qv::test::RawServer server;
  server.Expect(qv::test::RawScript().ReadRequest().Close());
  ExpectStart(OpenAt(server.Url()), "ConnectionError wait: no answer from " + server.Url() + ": ");
  server.Expect(qv::test::RawScript().Reply(kPlainHead).Write("<soap").Close());
  ExpectStart(OpenAt(server.Url()),
              "ConnectionError receive: the answer of " + server.Url() + " broke off: ");
}

// More than the connection's buffers take, so that the client still sends when the server resets it.
TEST(Errors, OfSending) {
  qv::test::RawServer server;
  server.Expect(qv::test::RawScript().ReadBytes(100).Reset());
  Session session = Session::Adopt(server.Url(), "u1");
  const std::string large(std::size_t{32} << 20, 'x');
  ExpectStart(Shown([&] {
                session.Run("1", {{"a", large}});
              }),
              "ConnectionError send: no answer from " + server.Url() + ": ");
}

TEST(Errors, OfAnswersThatAreNoneOfTheProtocol) {
  qv::test::RawServer server;
  server.Expect(qv::test::RawScript().Answer("<html>hello</html>"));
  ExpectStart(OpenAt(server.Url()), "Error answer: The respone that arrived is not valid");
}

TEST_F(SessionTest, ErrorsOfRefusedSessions) {
  try {
    const Session session(Url(), {"joe", "wrong"});
    ADD_FAILURE() << "opened";
  } catch (const SessionError& error) {
    EXPECT_EQ(error.phase(), Phase::kSession);
    EXPECT_TRUE(error.number().has_value());
    EXPECT_FALSE(error.details().text.empty());
  }
  EXPECT_EQ(OpenAt(Url()), "no error");
}

TEST_F(SessionTest, ErrorsOfScripts) {
  Session session = Open();
  try {
    session.Run("throw new ScriptError(5, 'no such customer')");
    ADD_FAILURE() << "ran";
  } catch (const ScriptError& error) {
    EXPECT_EQ(error.message(), "no such customer");
    EXPECT_EQ(error.number(), 5U);
    EXPECT_EQ(error.details().result, 0x80040005U);
    EXPECT_EQ(error.details().text, "no such customer");
    EXPECT_STREQ(ToString(error.phase()), "script");
  }
}

TEST_F(SessionTest, ErrorsOfConversion) {
  Session session = Open();
  EXPECT_EQ(Shown([&] { session.Run("'abc'").As<int>(); }),
            "ConversionError conversion: the string 'abc' is not a 32-bit integer");
}

TEST_F(SessionTest, ErrorsOfDownloads) {
  Session session = Open();
  try {
    session.Download(Url() + "/files/none", directory_.Path());
    ADD_FAILURE() << "saved";
  } catch (const Error& error) {
    EXPECT_EQ(error.phase(), Phase::kAnswer);
    EXPECT_GE(error.status(), 400);
    EXPECT_EQ(error.remedy(), Remedy::kOtherSession);
  }
}

}  // namespace
}  // namespace scriptwells
