#include "devservice/http/odd_forms.h"

#include <pugixml.hpp>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

class Odd : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.stallTime = std::chrono::milliseconds(600);
    StartWith(options);
    session_ = Login();
  }
  RawAnswer Run(const std::string& names, const std::string& script = "'\xC3\xA9\xE2\x82\xAC'") {
    return Post("/odd/" + names, "Execute", ExecuteEnvelope(session_, script, NilParameters()));
  }
};

bool IsWellFormed(const std::string& xml) {
  return pugi::xml_document().load_buffer(xml.data(), xml.size());
}

TEST_F(Odd, Ns2PrefixesTheAnswerElement) {
  const std::string body = Run("ns2").body;
  EXPECT_NE(body.find("<soap:Body><NS2:ExecuteResponse "
                      "xmlns:NS2=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\"><ExecuteResult "),
            std::string::npos)
      << body;
  EXPECT_NE(body.find("</ExecuteResult></NS2:ExecuteResponse></soap:Body>"), std::string::npos) << body;
}

TEST_F(Odd, Status500IsForFaultsOnly) {
  EXPECT_EQ(Run("status500").head.substr(0, 12), "HTTP/1.1 200");
  const RawAnswer fault = Run("status500", "throw 'x'");
  EXPECT_EQ(fault.head.substr(0, 12), "HTTP/1.1 500");
  EXPECT_EQ(FaultIn(fault.body), "1010|x|script");
}

TEST_F(Odd, NolengthEndsWithTheConnection) {
  const RawAnswer answer = Run("nolength");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "(none)");
  EXPECT_EQ(HeaderOf(answer.head, "Transfer-Encoding"), "(none)");
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(ValueIn(answer.body), "xsd:string|\xC3\xA9\xE2\x82\xAC");
}

TEST_F(Odd, ChunkedHasNoLengthAndKeepsTheConnection) {
  RawClient client(service_->Port());
  client.Send(PostRequest("/odd/chunked", "CloseUserSession", CloseEnvelope(session_)));
  const RawAnswer answer = client.Receive(std::chrono::milliseconds(300));
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "(none)");
  EXPECT_EQ(HeaderOf(answer.head, "Transfer-Encoding"), "chunked");
  EXPECT_EQ(answer.body.substr(0, 10), "40\r\n<?xml ");
  EXPECT_EQ(answer.body.substr(answer.body.size() - 7), "\r\n0\r\n\r\n");
  EXPECT_FALSE(answer.closed);
}

TEST_F(Odd, CutAnnouncesMoreThanItSends) {
  const RawAnswer answer = Run("cut");
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(std::stoul(HeaderOf(answer.head, "Content-Length")) / 2, answer.body.size());
  EXPECT_GT(answer.body.size(), 100u);
}

TEST_F(Odd, StallHoldsStillAfterHalfTheBody) {
  RawClient client(service_->Port());
  client.Send(PostRequest("/odd/stall", "Execute", ExecuteEnvelope(session_, "1", NilParameters())));
  const RawAnswer first = client.Receive(std::chrono::milliseconds(300));
  EXPECT_TRUE(first.timedOut);
  EXPECT_EQ(std::stoul(HeaderOf(first.head, "Content-Length")) / 2, first.body.size());
  EXPECT_TRUE(client.Receive().closed);
}

TEST_F(Odd, StallheadIsSilentAndThenAnswers) {
  const auto start = Clock::now();
  EXPECT_EQ(ValueIn(Run("stallhead").body), "xsd:string|\xC3\xA9\xE2\x82\xAC");
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(600));
}

TEST_F(Odd, WhitespaceStandsBeforeTheAnswer) {
  EXPECT_NE(Run("whitespace").body.find("<soap:Body>\r\n  <ExecuteResponse "), std::string::npos);
}

TEST_F(Odd, HtmlIsAPageWithStatus404) {
  const RawAnswer answer = Run("html");
  EXPECT_EQ(answer.head.substr(0, 12), "HTTP/1.1 404");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/html; charset=utf-8");
  EXPECT_EQ(answer.body.find("soap"), std::string::npos);
}

TEST_F(Odd, SpoilIsNotWellFormed) {
  const std::string body = Run("spoil").body;
  EXPECT_FALSE(IsWellFormed(body));
  EXPECT_TRUE(IsWellFormed(Run("ns2").body));
  EXPECT_NE(body.find("<soap:Envelope "), std::string::npos);
}

TEST_F(Odd, Refuse2DropsTwoRequestsAndThenWorks) {
  for (int i = 0; i < 2; ++i) {
    const RawAnswer answer = Run("refuse2");
    EXPECT_TRUE(answer.closed);
    EXPECT_EQ(answer.head, "");
  }
  EXPECT_EQ(ValueIn(Run("refuse2", "7").body), "xsd:int|7");
  EXPECT_EQ(Run("refuse2+ns2").head, "");
  const nlohmann::json stats = Stats();
  EXPECT_EQ(stats["refused"], 3);
  EXPECT_EQ(stats["actions"]["Execute"], 1);
  EXPECT_EQ(stats["scriptsRun"], 1);
}

TEST_F(Odd, Latin1WritesOtherCharactersAsReferences) {
  const RawAnswer answer = Run("latin1");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=iso-8859-1");
  EXPECT_EQ(answer.body.substr(0, 44),
            "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>"
            "<");
  EXPECT_NE(answer.body.find(">\xE9&#8364;</ExecuteResult>"), std::string::npos) << answer.body;
}

TEST_F(Odd, Utf16HasByteOrderMarkAndTwoBytes) {
  const RawAnswer answer = Run("utf16", "'\xF0\x9F\x98\x80'");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=utf-16");
  EXPECT_EQ(answer.body.substr(0, 6), std::string("\xFF\xFE<\0?\0", 6));
  EXPECT_NE(answer.body.find(std::string(">\0\x3D\xD8\x00\xDE<\0/\0", 10)), std::string::npos);
}

TEST_F(Odd, ZeroHasNoBodyAndKeepsTheConnection) {
  RawClient client(service_->Port());
  for (int i = 0; i < 2; ++i) {
    client.Send(PostRequest("/odd/zero", "Execute", ExecuteEnvelope(session_, "1", NilParameters())));
    const RawAnswer answer = client.Receive();
    EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "0");
    EXPECT_EQ(answer.body, "");
    EXPECT_FALSE(answer.closed);
  }
}

TEST_F(Odd, FormsCombine) {
  const RawAnswer answer = Run("ns2+latin1+cut");
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=iso-8859-1");
  EXPECT_EQ(HeaderOf(Run("nolength+whitespace").head, "Content-Length"), "(none)");
}

TEST_F(Odd, ValuesThatNoScriptAnswersWith) {
  constexpr const char* kRows[][2] = {
      {"url-empty-parts", "sof:url|<URL/><C/>"},
      {"url-no-caption", "sof:url|<URL>u</URL><C/>"},
      {"url-no-marks", "sof:url|http://quorvane.example/"},
      {"url-nothing", "sof:url|"},
      {"bad-date", "xsd:date|2024-02-30"},
      {"short-date", "xsd:date|2024-03"},
      {"empty-date", "xsd:date|"},
      {"date-with-time", "xsd:date|2024-03-05T10:15:30Z"},
      {"bad-time", "xsd:time|25:00:00Z"},
      {"short-time", "xsd:time|10:15"},
      {"bad-datetime", "xsd:dateTime|2024-03T10:15:30Z"},
      {"datetime-with-offset", "xsd:dateTime|2024-03-05T10:15:30+02:00"},
      {"datetime-with-day-offset", "xsd:dateTime|2024-03-05T10:15:30+24:00"},
      {"bad-duration", "xsd:duration|p1d"},
      {"loose-duration", "xsd:duration|P3D1Y"},
      {"exponent-duration", "xsd:duration|PT1.23457e+007S"},
      {"unknown-type", "xsd:decimal|1.5"},
  };
  for (const auto& row : kRows) EXPECT_EQ(ValueIn(Run(row[0]).body), row[1]) << row[0];
  EXPECT_EQ(ValueIn(Run("bad-date", "null").body), "xsd:date|2024-02-30");
  EXPECT_EQ(ValueIn(Run("ns2+bad-date", "undefined").body), "xsd:date|2024-02-30");
}

TEST_F(Odd, ValuesLeaveSessionsAndFaultsAlone) {
  const std::string body = Post("/odd/bad-date", "CreateUserSession", CreateEnvelope("Username=a;")).body;
  EXPECT_NE(body.find("<CreateUserSessionResult xsi:type=\"xsd:string\">"), std::string::npos) << body;
  EXPECT_EQ(FaultIn(Run("bad-date", "throw 'x'").body), "1010|x|script");
}

TEST_F(Odd, UnknownNameIsRefusedWithTheNames) {
  const RawAnswer answer = Run("ns2+wrong");
  EXPECT_EQ(answer.head.substr(0, 12), "HTTP/1.1 404");
  EXPECT_NE(
      answer.body.find("ns2, status500, nolength, chunked, cut, stall, stallhead, whitespace, html, spoil, "
                       "refuse2, latin1, utf16, strictxml, zero, url-empty-parts, url-no-caption, "),
      std::string::npos);
}

TEST_F(Odd, StopEndsAStallAtOnce) {
  ServiceOptions options = TestOptions();
  options.stallTime = std::chrono::seconds(100);
  StartWith(options);
  RawClient body(service_->Port());
  RawClient head(service_->Port());
  body.Send(PostRequest("/odd/stall", "CreateUserSession", CreateEnvelope("Username=a;")));
  head.Send(PostRequest("/odd/stallhead", "CreateUserSession", CreateEnvelope("Username=a;")));
  EXPECT_TRUE(body.Receive(std::chrono::milliseconds(500)).timedOut);
  const auto start = Clock::now();
  service_->Stop();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
}

// What clients write beyond the basic plane, and what every other server of the field takes.
TEST_F(Odd, StrictXmlRefusesParametersThatAreNotWellFormed) {
  const auto run = [this](const std::string& prefix, const std::string& text) {
    const std::string parameters = ArrayOf(1, ParameterElement("p", "xsd:string", text));
    return Post(prefix, "Execute", ExecuteEnvelope(session_, "parameters.p", parameters)).body;
  };
  EXPECT_EQ(ValueIn(run("", "&#55357;&#56832;")), "xsd:string|\xF0\x9F\x98\x80");
  const std::string fault = FaultIn(run("/odd/strictxml", "&#55357;&#56832;"));
  EXPECT_EQ(fault.substr(0, fault.find(" at byte ")),
            "1001|The request is not well-formed XML: reference to invalid character number");
  EXPECT_EQ(fault.substr(fault.find(',')), ", \"&#55357;\".|request");
  EXPECT_NE(run("/odd/strictxml", "\x01").find("the character code 1"), std::string::npos);
  EXPECT_EQ(ValueIn(run("/odd/strictxml", "\xC3\xA9&#233;")), "xsd:string|\xC3\xA9\xC3\xA9");
}

TEST_F(Odd, StrictXmlRefusesCredentialsThatAreNotWellFormed) {
  std::string envelope = CreateEnvelope("Username=@;");
  envelope.replace(envelope.find('@'), 1, "&#55357;&#56832;");
  EXPECT_EQ(FaultIn(Post("", "CreateUserSession", envelope).body), "(no fault)");
  EXPECT_EQ(FaultIn(Post("/odd/strictxml", "CreateUserSession", envelope).body).substr(0, 5), "1001|");
}

// The document is escaped once more inside the request, which stays well-formed.
TEST_F(Odd, StrictXmlRefusesScriptsThatAreNotWellFormed) {
  std::string envelope = ExecuteEnvelope(session_, "'@'", NilParameters());
  EXPECT_EQ(ValueIn(Post("/odd/strictxml", "Execute", envelope).body), "xsd:string|@");
  envelope.replace(envelope.find("'@'"), 3, "'&amp;#55357;&amp;#56832;'");
  EXPECT_EQ(ValueIn(Post("", "Execute", envelope).body), "xsd:string|\xF0\x9F\x98\x80");
  const std::string fault = FaultIn(Post("/odd/strictxml", "Execute", envelope).body);
  EXPECT_EQ(fault.substr(0, fault.find(" at byte ")),
            "1006|The script document is not well-formed XML: reference to invalid character number");
}

}  // namespace
}  // namespace qv::devservice::testing
