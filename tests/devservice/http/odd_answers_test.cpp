// Answers that a path asks for with /odd/NAME, tables included.
#include <pugixml.hpp>
#include <thread>

#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

constexpr char kTextScript[] = "'\xC3\xA9\xE2\x82\xAC'";
constexpr char kTableScript[] = "[{a: 1, b: 'x'}, {a: 2, b: 'y'}]";
constexpr char kEnd[] = "</ExecuteResult></ExecuteResponse></soap:Body></soap:Envelope>";

class Odd : public TableTest {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.stallTime = std::chrono::milliseconds(600); });
  }
  RawAnswer Run(const std::string& names, const std::string& script = kTextScript) {
    return TableTest::Run("/odd/" + names, script);
  }
  std::string Table(const std::string& names) { return Run(names, kTableScript).body; }
  std::string RequestFor(const std::string& names) {
    return PostRequest("/odd/" + names, "Execute", ExecuteEnvelope(Session(), "1", NilParameters()));
  }
};

bool IsWellFormed(const std::string& xml) {
  return pugi::xml_document().load_buffer(xml.data(), xml.size());
}

std::string Wide(const std::string& text) {
  std::string wide;
  for (const char c : text) wide += std::string(1, c) + '\0';
  return wide;
}

TEST_F(Odd, StatusAndHeaders) {
  constexpr const char* kRows[][5] = {
      {"status500", "1", "200", "Content-Type", "text/xml; charset=utf-8"},
      {"status500", "throw 'x'", "500", "Content-Type", "text/xml; charset=utf-8"},
      {"html", "1", "404", "Content-Type", "text/html; charset=utf-8"},
      {"latin1", "1", "200", "Content-Type", "text/xml; charset=iso-8859-1"},
      {"utf16", "1", "200", "Content-Type", "text/xml; charset=utf-16"},
      {"ns2+latin1+cut", "1", "200", "Content-Type", "text/xml; charset=iso-8859-1"},
      {"nolength", "1", "200", "Content-Length", "(none)"},
      {"nolength", "1", "200", "Transfer-Encoding", "(none)"},
      {"nolength+whitespace", "1", "200", "Content-Length", "(none)"},
      {"ns2+wrong", "1", "404", "Content-Type", "text/plain; charset=utf-8"},
  };
  for (const auto& [names, script, status, header, value] : kRows) {
    const RawAnswer answer = Run(names, script);
    EXPECT_EQ(StatusOf(answer), status) << names;
    EXPECT_EQ(HeaderOf(answer.head, header), value) << names;
  }
  for (const char* closes : {"nolength", "ns2+latin1+cut"}) EXPECT_TRUE(Run(closes).closed) << closes;
}

TEST_F(Odd, PartsOfTheBody) {
  const std::pair<const char*, std::string> parts[] = {
      {"ns2",
       "<soap:Body><NS2:ExecuteResponse "
       "xmlns:NS2=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\"><ExecuteResult "},
      {"ns2", "</ExecuteResult></NS2:ExecuteResponse></soap:Body>"},
      {"whitespace", "<soap:Body>\r\n  <ExecuteResponse "},
      {"spoil", "<soap:Envelope "},
      {"latin1", ">\xE9&#8364;</ExecuteResult>"},
      {"utf16", std::string(">\0\xE9\0\xAC\x20<\0/\0", 10)},
      {"ns2+wrong",
       "ns2, status500, nolength, chunked, cut, stall, stallhead, whitespace, html, spoil, refuse2, latin1, "
       "utf16, "
       "strictxml, zero, refuse, slow, drip, short, long, table-sof, "},
  };
  for (const auto& [names, part] : parts) EXPECT_TRUE(Contains(Run(names).body, part)) << names;
  EXPECT_TRUE(
      Contains(Run("utf16", "'\xF0\x9F\x98\x80'").body, std::string(">\0\x3D\xD8\x00\xDE<\0/\0", 10)));
  EXPECT_EQ(Run("latin1").body.substr(0, 44), "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><");
  EXPECT_EQ(Run("utf16").body.substr(0, 6), std::string("\xFF\xFE<\0?\0", 6));
  EXPECT_FALSE(Contains(Run("html").body, "soap"));
  EXPECT_FALSE(IsWellFormed(Run("spoil").body));
  EXPECT_TRUE(IsWellFormed(Run("ns2").body));
}

TEST_F(Odd, PartsOfTables) {
  constexpr const char* kParts[][2] = {
      {"table-sof",
       "<ExecuteResponse xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\" "
       "xmlns:sof=\"http://quorvane.example/dev/ns/SOF/2.0\"><ExecuteResult xsi:type=\"sof:RecordList\" "},
      {"table-other-type", "<ExecuteResult xsi:type=\"any:MyRECORDLIST2\" "},
      {"table-other-names", "/SOF/2.0\"><a><b targetNamespace="},
      {"table-other-names", R"(<c xsd:name="a" xsd:type="xsd:int" xsd:displayName="a" )"},
      {"table-other-names",
       "/></b></a><d><e><f>1</f><f>x</f></e><e><f>2</f><f>y</f></e></d></ExecuteResult>"},
      {"table-whitespace", "/SOF/2.0\">\n  <q1:Headers>\n  <xsd:schema targetNamespace="},
      {"table-whitespace", "\">\n  <xsd:element xsd:name=\"a\" "},
      {"table-whitespace", "/>\n  <xsd:element xsd:name=\"b\" "},
      {"table-whitespace",
       "/>\n  </xsd:schema>\n  </q1:Headers>\n  <q1:Records>\n  <q1:Record>\n  <a>1</a>\n  <b>x</b>\n  "
       "</q1:Record>\n  <q1:Record>\n  <a>2</a>\n  <b>y</b>\n  </q1:Record>\n  </q1:Records>\n  "
       "</ExecuteResult>"},
      {"table-no-headers", "/SOF/2.0\"><q1:Records><q1:Record><a>1</a>"},
      {"table-no-schema", "/SOF/2.0\"><q1:Headers></q1:Headers><q1:Records><q1:Record>"},
      {"table-no-records", "</xsd:schema></q1:Headers></ExecuteResult>"},
      {"table-no-headers+table-no-records",
       "xmlns:q1=\"http://quorvane.example/dev/ns/SOF/2.0\"></ExecuteResult>"},
      {"table-no-names", R"(<xsd:element xsd:type="xsd:int" xsd:displayName="a" )"},
      {"table-no-types", R"(<xsd:element xsd:name="a" xsd:displayName="a" )"},
      {"table-cut", "</q1:Headers><q1:Records><q1:Record><a>1</a><b>x</b></"},
      {"table-cut", kEnd},
      {"table-x", "table-sof, table-other-type, table-other-names, table-whitespace, "},
  };
  for (const auto& [names, part] : kParts) EXPECT_TRUE(Contains(Table(names), part)) << names;
  const std::string plain = Record("<a>1</a><b>x</b>") + Record("<a>2</a><b>y</b>");
  const std::pair<const char*, std::string> records[] = {
      {"table-sof", plain},
      {"table-other-type", plain},
      {"table-unknown-type", plain},
      {"table-extra-cell",
       Record("<a>1</a><b>x</b><extra>1</extra>") + Record("<a>2</a><b>y</b><extra>1</extra>")},
      {"table-missing-cell", Record("<a>1</a>") + Record("<a>2</a>")},
  };
  for (const auto& [names, expected] : records) EXPECT_EQ(RecordsIn(Table(names)), expected) << names;
  EXPECT_EQ(RecordsIn(Run("table-missing-cell", "[{}]").body), Record(""));
  EXPECT_EQ(ColumnsIn(Table("table-unknown-type")), "a xsd:decimal, b xsd:string");
}

TEST_F(Odd, CutTablesAreNotWellFormed) {
  EXPECT_FALSE(IsWellFormed(Table("table-cut")));
  EXPECT_TRUE(IsWellFormed(Table("table-sof")));
  EXPECT_FALSE(Contains(Table("table-cut"), "</q1:Records>"));
  EXPECT_FALSE(IsWellFormed(Run("table-cut", "typed.table({a: 'int'})").body));
  // Characters stay whole.
  for (const char* more : {"", "-", "--"}) {
    const std::string script = std::string("[{a: '\xE2\x82\xAC") + more + "'.repeat(50)}]";
    const std::string encoded = Run("table-cut+utf16", script).body;
    EXPECT_EQ(encoded.size() % 2, 0U);
    EXPECT_EQ(encoded.substr(encoded.size() - Wide(kEnd).size()), Wide(kEnd));
  }
}

TEST_F(Odd, ValuesThatNoScriptAnswersWith) {
  constexpr const char* kRows[][3] = {
      {"url-empty-parts", "1", "sof:url|<URL/><C/>"},
      {"url-no-caption", "1", "sof:url|<URL>u</URL><C/>"},
      {"url-no-marks", "1", "sof:url|http://quorvane.example/"},
      {"url-nothing", "1", "sof:url|"},
      {"bad-date", "1", "xsd:date|2024-02-30"},
      {"bad-date", "null", "xsd:date|2024-02-30"},
      {"ns2+bad-date", "undefined", "xsd:date|2024-02-30"},
      {"table-cut+bad-date", kTableScript, "xsd:date|2024-02-30"},
      {"short-date", "1", "xsd:date|2024-03"},
      {"empty-date", "1", "xsd:date|"},
      {"date-with-time", "1", "xsd:date|2024-03-05T10:15:30Z"},
      {"bad-time", "1", "xsd:time|25:00:00Z"},
      {"short-time", "1", "xsd:time|10:15"},
      {"bad-datetime", "1", "xsd:dateTime|2024-03T10:15:30Z"},
      {"datetime-with-offset", "1", "xsd:dateTime|2024-03-05T10:15:30+02:00"},
      {"datetime-with-day-offset", "1", "xsd:dateTime|2024-03-05T10:15:30+24:00"},
      {"bad-duration", "1", "xsd:duration|p1d"},
      {"loose-duration", "1", "xsd:duration|P3D1Y"},
      {"exponent-duration", "1", "xsd:duration|PT1.23457e+007S"},
      {"unknown-type", "1", "xsd:decimal|1.5"},
      {"table-no-records+table-cut", "5", "xsd:int|5"},
      {"nolength", kTextScript, "xsd:string|\xC3\xA9\xE2\x82\xAC"},
  };
  for (const auto& [names, script, value] : kRows)
    EXPECT_EQ(ValueIn(Run(names, script).body), value) << names;
  // Sessions and faults do not change.
  EXPECT_TRUE(Contains(Post("/odd/bad-date", "CreateUserSession", CreateEnvelope("Username=a;")).body,
                       "<CreateUserSessionResult xsi:type=\"xsd:string\">"));
  for (const char* names : {"bad-date", "status500"})
    EXPECT_EQ(FaultIn(Run(names, "throw 'x'").body), "1010|x|script") << names;
}

TEST_F(Odd, ChunkedHasNoLengthAndKeepsTheConnection) {
  RawClient client(Port(), PostRequest("/odd/chunked", "CloseUserSession", CloseEnvelope(Session())));
  const RawAnswer answer = client.Receive(std::chrono::milliseconds(300));
  EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "(none)");
  EXPECT_EQ(HeaderOf(answer.head, "Transfer-Encoding"), "chunked");
  EXPECT_EQ(answer.body.substr(0, 10), "40\r\n<?xml ");
  EXPECT_EQ(answer.body.substr(answer.body.size() - 7), "\r\n0\r\n\r\n");
  EXPECT_FALSE(answer.closed);
}

TEST_F(Odd, CutAndStallSendHalfTheBody) {
  const RawAnswer cut = Run("cut");
  EXPECT_TRUE(cut.closed);
  EXPECT_EQ(std::stoul(HeaderOf(cut.head, "Content-Length")) / 2, cut.body.size());
  EXPECT_GT(cut.body.size(), 100U);
  RawClient client(Port(), RequestFor("stall"));
  const RawAnswer stalled = client.Receive(std::chrono::milliseconds(300));
  EXPECT_TRUE(stalled.timedOut);
  EXPECT_EQ(std::stoul(HeaderOf(stalled.head, "Content-Length")) / 2, stalled.body.size());
  EXPECT_TRUE(client.Receive().closed);
}

TEST_F(Odd, StallheadIsSilentAndThenAnswers) {
  Session();
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(ValueIn(Run("stallhead", "7").body), "xsd:int|7");
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(600));
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

TEST_F(Odd, RefuseDropsAllRequests) {
  for (int i = 0; i < 4; ++i) EXPECT_EQ(Run("refuse").head, "");
  EXPECT_EQ(Stats()["refused"], 4);
  EXPECT_EQ(Stats()["scriptsRun"], 0);
}

TEST_F(Odd, ShortAndLongHaveAWrongLength) {
  const RawAnswer shorter = Run("short");
  EXPECT_TRUE(shorter.closed);
  EXPECT_EQ(std::stoul(HeaderOf(shorter.head, "Content-Length")), shorter.body.size() + 1);
  // The client reads no further than to the announced length, and what has come with it by then.
  std::string surplus;
  for (int wait = 10; wait < 10000 && surplus.empty(); wait *= 2) {
    RawClient client(Port(), RequestFor("long"));
    std::this_thread::sleep_for(std::chrono::milliseconds(wait));
    const RawAnswer longer = client.Receive();
    surplus = longer.body.substr(std::stoul(HeaderOf(longer.head, "Content-Length")));
  }
  EXPECT_EQ(surplus, "................");
}

TEST_F(Odd, SlowAndDripTakeASecond) {
  Session();
  for (const char* name : {"slow", "drip"}) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ValueIn(Run(name, "7").body), "xsd:int|7") << name;
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(800)) << name;
  }
}

TEST_F(Odd, DripSendsPieces) {
  RawClient client(Port(), RequestFor("drip"));
  int pieces = 0;
  std::string body;
  client.Receive(std::chrono::seconds(60), [&](std::string_view piece) {
    ++pieces;
    body += piece;
  });
  EXPECT_GT(pieces, 10);
  EXPECT_EQ(ValueIn(body), "xsd:int|1");
}

TEST_F(Odd, ZeroHasNoBodyAndKeepsTheConnection) {
  RawClient client(Port());
  for (int i = 0; i < 2; ++i) {
    client.Send(RequestFor("zero"));
    const RawAnswer answer = client.Receive();
    EXPECT_EQ(HeaderOf(answer.head, "Content-Length"), "0");
    EXPECT_EQ(answer.body, "");
    EXPECT_FALSE(answer.closed);
  }
}

TEST_F(Odd, StopEndsAStallAtOnce) {
  StartWith([](ServiceOptions& options) { options.stallTime = std::chrono::seconds(100); });
  RawClient body(Port(), RequestFor("stall"));
  RawClient head(Port(), RequestFor("stallhead"));
  EXPECT_TRUE(body.Receive(std::chrono::milliseconds(500)).timedOut);
  StopAtOnce();
}

// Clients write characters beyond the basic plane as two references.
TEST_F(Odd, StrictXmlRefusesRequestsThatAreNotWellFormed) {
  const auto run = [this](const std::string& prefix, const std::string& text) {
    return TableTest::Run(prefix, "parameters.p", OneParameter("xsd:string", text)).body;
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
