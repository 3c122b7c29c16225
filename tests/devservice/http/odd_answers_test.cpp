// Answers that a path asks for with /odd/NAME.
#include <pugixml.hpp>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kText[] = "xsd:string|\xC3\xA9\xE2\x82\xAC";

class Odd : public ServiceTest {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.stallTime = std::chrono::milliseconds(600); });
  }
  RawAnswer Run(const std::string& names, const std::string& script = "'\xC3\xA9\xE2\x82\xAC'") {
    return ServiceTest::Run("/odd/" + names, script);
  }
};

bool IsWellFormed(const std::string& xml) {
  return pugi::xml_document().load_buffer(xml.data(), xml.size());
}

TEST_F(Odd, FormsOfTheXml) {
  const std::string prefixed = Run("ns2").body;
  EXPECT_TRUE(Contains(prefixed,
                       "<soap:Body><NS2:ExecuteResponse "
                       "xmlns:NS2=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\"><ExecuteResult "));
  EXPECT_TRUE(Contains(prefixed, "</ExecuteResult></NS2:ExecuteResponse></soap:Body>"));
  EXPECT_TRUE(IsWellFormed(prefixed));
  EXPECT_TRUE(Contains(Run("whitespace").body, "<soap:Body>\r\n  <ExecuteResponse "));
  const std::string spoiled = Run("spoil").body;
  EXPECT_FALSE(IsWellFormed(spoiled));
  EXPECT_TRUE(Contains(spoiled, "<soap:Envelope "));
}

TEST_F(Odd, Status500IsForFaultsOnly) {
  EXPECT_EQ(StatusOf(Run("status500")), "200");
  const RawAnswer fault = Run("status500", "throw 'x'");
  EXPECT_EQ(StatusOf(fault), "500");
  EXPECT_EQ(FaultIn(fault.body), "1010|x|script");
}

TEST_F(Odd, HtmlIsAPageWithStatus404) {
  const RawAnswer answer = Run("html");
  EXPECT_EQ(StatusOf(answer), "404");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/html; charset=utf-8");
  EXPECT_FALSE(Contains(answer.body, "soap"));
}

TEST_F(Odd, NolengthEndsWithTheConnection) {
  const RawAnswer answer = Run("nolength");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "(none)");
  EXPECT_EQ(HeaderOf(answer.head, "Transfer-Encoding"), "(none)");
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(ValueIn(answer.body), kText);
}

TEST_F(Odd, ChunkedHasNoLengthAndKeepsTheConnection) {
  RawClient client(Port());
  client.Send(PostRequest("/odd/chunked", "CloseUserSession", CloseEnvelope(Session())));
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

TEST_F(Odd, StallIsSilentAfterHalfTheBody) {
  RawClient client(Port());
  client.Send(PostRequest("/odd/stall", "Execute", ExecuteEnvelope(Session(), "1", NilParameters())));
  const RawAnswer first = client.Receive(std::chrono::milliseconds(300));
  EXPECT_TRUE(first.timedOut);
  EXPECT_EQ(std::stoul(HeaderOf(first.head, "Content-Length")) / 2, first.body.size());
  EXPECT_TRUE(client.Receive().closed);
}

TEST_F(Odd, StallheadIsSilentAndThenAnswers) {
  const auto start = Clock::now();
  EXPECT_EQ(ValueIn(Run("stallhead").body), kText);
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(600));
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

TEST_F(Odd, Charsets) {
  const RawAnswer latin = Run("latin1");
  EXPECT_EQ(HeaderOf(latin.head, "Content-Type"), "text/xml; charset=iso-8859-1");
  EXPECT_EQ(latin.body.substr(0, 44), "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><");
  EXPECT_TRUE(Contains(latin.body, ">\xE9&#8364;</ExecuteResult>"));
  const RawAnswer wide = Run("utf16", "'\xF0\x9F\x98\x80'");
  EXPECT_EQ(HeaderOf(wide.head, "Content-Type"), "text/xml; charset=utf-16");
  EXPECT_EQ(wide.body.substr(0, 6), std::string("\xFF\xFE<\0?\0", 6));
  EXPECT_TRUE(Contains(wide.body, std::string(">\0\x3D\xD8\x00\xDE<\0/\0", 10)));
}

TEST_F(Odd, ZeroHasNoBodyAndKeepsTheConnection) {
  RawClient client(Port());
  for (int i = 0; i < 2; ++i) {
    client.Send(PostRequest("/odd/zero", "Execute", ExecuteEnvelope(Session(), "1", NilParameters())));
    const RawAnswer answer = client.Receive();
    EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "0");
    EXPECT_EQ(answer.body, "");
    EXPECT_FALSE(answer.closed);
  }
}

TEST_F(Odd, NamesCombineAndHaveToBeKnown) {
  const RawAnswer answer = Run("ns2+latin1+cut");
  EXPECT_TRUE(answer.closed);
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=iso-8859-1");
  EXPECT_EQ(HeaderOf(Run("nolength+whitespace").head, "Content-Length"), "(none)");
  const RawAnswer unknown = Run("ns2+wrong");
  EXPECT_EQ(StatusOf(unknown), "404");
  EXPECT_TRUE(Contains(unknown.body,
                       "ns2, status500, nolength, chunked, cut, stall, stallhead, whitespace, html, spoil, "
                       "refuse2, latin1, utf16, strictxml, zero, url-empty-parts, url-no-caption, "));
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
  for (const auto& [name, value] : kRows) EXPECT_EQ(ValueIn(Run(name).body), value) << name;
  EXPECT_EQ(ValueIn(Run("bad-date", "null").body), "xsd:date|2024-02-30");
  EXPECT_EQ(ValueIn(Run("ns2+bad-date", "undefined").body), "xsd:date|2024-02-30");
  // Sessions and faults do not change.
  EXPECT_TRUE(Contains(Post("/odd/bad-date", "CreateUserSession", CreateEnvelope("Username=a;")).body,
                       "<CreateUserSessionResult xsi:type=\"xsd:string\">"));
  EXPECT_EQ(FaultIn(Run("bad-date", "throw 'x'").body), "1010|x|script");
}

TEST_F(Odd, StopEndsAStallAtOnce) {
  StartWith([](ServiceOptions& options) { options.stallTime = std::chrono::seconds(100); });
  RawClient body(Port());
  RawClient head(Port());
  body.Send(PostRequest("/odd/stall", "CreateUserSession", CreateEnvelope("Username=a;")));
  head.Send(PostRequest("/odd/stallhead", "CreateUserSession", CreateEnvelope("Username=a;")));
  EXPECT_TRUE(body.Receive(std::chrono::milliseconds(500)).timedOut);
  const auto start = Clock::now();
  service_->Stop();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
}

// Clients write characters beyond the basic plane as two references.
TEST_F(Odd, StrictXmlRefusesRequestsThatAreNotWellFormed) {
  const auto run = [this](const std::string& prefix, const std::string& text) {
    return ServiceTest::Run(prefix, "parameters.p", OneParameter("xsd:string", text)).body;
  };
  EXPECT_EQ(ValueIn(run("", "&#55357;&#56832;")), "xsd:string|\xF0\x9F\x98\x80");
  const std::string fault = FaultIn(run("/odd/strictxml", "&#55357;&#56832;"));
  EXPECT_EQ(fault.substr(0, fault.find(" at byte ")),
            "1001|The request is not well-formed XML: reference to invalid character number");
  EXPECT_EQ(fault.substr(fault.find(',')), ", \"&#55357;\".|request");
  EXPECT_TRUE(Contains(run("/odd/strictxml", "\x01"), "the character code 1"));
  EXPECT_EQ(ValueIn(run("/odd/strictxml", "\xC3\xA9&#233;")), "xsd:string|\xC3\xA9\xC3\xA9");

  const std::string login = Replaced(CreateEnvelope("Username=@;"), "@", "&#55357;&#56832;");
  EXPECT_EQ(FaultIn(Post("", "CreateUserSession", login).body), "(no fault)");
  EXPECT_EQ(FaultIn(Post("/odd/strictxml", "CreateUserSession", login).body).substr(0, 5), "1001|");
}

// The document is escaped once more inside the request, which stays well-formed.
TEST_F(Odd, StrictXmlRefusesScriptsThatAreNotWellFormed) {
  const std::string good = ExecuteEnvelope(Session(), "'@'", NilParameters());
  EXPECT_EQ(ValueIn(Post("/odd/strictxml", "Execute", good).body), "xsd:string|@");
  const std::string bad = Replaced(good, "'@'", "'&amp;#55357;&amp;#56832;'");
  EXPECT_EQ(ValueIn(Post("", "Execute", bad).body), "xsd:string|\xF0\x9F\x98\x80");
  const std::string fault = FaultIn(Post("/odd/strictxml", "Execute", bad).body);
  EXPECT_EQ(fault.substr(0, fault.find(" at byte ")),
            "1006|The script document is not well-formed XML: reference to invalid character number");
}

}  // namespace
}  // namespace qv::devservice::testing
