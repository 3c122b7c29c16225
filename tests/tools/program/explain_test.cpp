// `scriptwells explain` of requests and answers from files.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "fixtures/temporary_directory.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;
using Json = nlohmann::json;

constexpr char kOpening[] =
    "POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\nHost: a\r\n\r\n"
    "<E:Envelope><E:Body><CreateUserSession><ConnectionString>DbReplicationId=;Username=joe;Password=canary1;"
    "</ConnectionString></CreateUserSession></E:Body></E:Envelope>";
constexpr char kOpened[] =
    "HTTP/1.1 200 OK\r\nContent-Length: 154\r\n\r\n"
    "<soap:Envelope><soap:Body><CreateUserSessionResponse><r>canary2</r></CreateUserSessionResponse></"
    "soap:Body>"
    "</soap:Envelope>";

class Explain : public ::testing::Test {
 protected:
  Outcome Of(const std::string& message, const std::string& options = "") const {
    return RunTool("explain " + folder_.Write("message", message) + " " + options);
  }
  static std::string InBody(const std::string& content) {
    return "<soap:Envelope><soap:Body>" + content + "</soap:Body></soap:Envelope>";
  }

  TemporaryDirectory folder_;
};

TEST_F(Explain, Request) {
  Of("<E><B>\n<Execute><usid>u1</usid><Script>&lt;Scriptwell Language=\"JavaScript\"&gt;&lt;Code&gt;6 * 7\n+ "
     "1"
     "&lt;/Code&gt;&lt;/Scriptwell&gt;</Script><parameters><Parameter><Name>a</Name><Value "
     "xsi:type=\"xsd:int\">7"
     "</Value></Parameter></parameters></Execute></B></E>")
      .Succeeds(
          "request of Execute\n"
          "1:1       envelope: E\n"
          "2:1         method: Execute\n"
          "2:10          usid: ***\n"
          "2:25          script in JavaScript: 6 * 7\n"
          "                    + 1\n"
          "3:82          parameter a xsd:int: 7\n"
          "\nA client sends such a request.\n");
}

TEST_F(Explain, AnswerThatClientsRead) {
  Of("HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 142\r\n\r\n" +
     InBody("<ExecuteResponse><r xsi:type=\"xsd:int\">42</r></ExecuteResponse>") + std::string(26, ' '))
      .Succeeds(
          "answer of Execute\n"
          "1:1         start: HTTP/1.1 200 OK\n"
          "2:1         Content-Type: text/xml\n"
          "3:1         Content-Length: 142\n"
          "5:1       envelope: soap:Envelope\n"
          "5:27        answer: ExecuteResponse\n"
          "5:44          value xsd:int: 42\n"
          "\nA client reads this answer:\n  int 42\n");
}

TEST_F(Explain, PlaceOfWhatClientsRefuse) {
  const Outcome outcome =
      Of("\n" + InBody("\n <ExecuteResponse><r xsi:type='xsd:int'>42</r></ExecuteResponse>"));
  EXPECT_EQ(outcome.exit, 7);
  EXPECT_TRUE(Holds(outcome.out, "\nwhite-space: ")) << outcome.out;
  EXPECT_TRUE(Holds(outcome.out, "found   the answer, body, byte 26 (line 2, column 27): \"\\n \""))
      << outcome.out;
  EXPECT_TRUE(Holds(outcome.out, "\nA client refuses this answer: The respone that arrived is not valid"))
      << outcome.out;
}

TEST_F(Explain, TablesFaultsAndLossesAsJson) {
  const Outcome table =
      Of(InBody("<ExecuteResponse><r xsi:type=\"q1:RecordList\"><h><s><c xsd:name=\"city\" "
                "xsd:type=\"xsd:string\"/></s></h><d><w><v>Rome</v></w></d></r></ExecuteResponse>"),
         "--json");
  EXPECT_EQ(table.exit, 0) << table.out;
  EXPECT_EQ(Json::parse(table.out)["parts"].back(),
            Json::parse(R"({"label":"row","text":"Rome","line":1,"column":131})"));
  const Outcome fault =
      Of(InBody("<soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/errorCode&gt;"
                "&lt;/ErrorObject&gt;</faultstring></soap:Fault>"),
         "--json");
  EXPECT_EQ(Json::parse(fault.out)["parts"].back()["label"], "errorCode");
  EXPECT_EQ(Json::parse(fault.out)["parts"].back()["text"], "5");
  EXPECT_EQ(Json::parse(fault.out)["client"]["result"], "fault");
  const Outcome loss =
      Of(InBody("<ExecuteResponse><r xsi:type='xsd:long'>5</r></ExecuteResponse>"), "--json");
  EXPECT_EQ(loss.exit, 7);
  EXPECT_EQ(Json::parse(loss.out)["findings"][0]["rule"], "type-lost");
  EXPECT_EQ(Json::parse(loss.out)["client"]["result"], "nothing");
}

TEST_F(Explain, SecretsAreShownOnDemandOnly) {
  const std::string messages[] = {
      kOpening,
      kOpened,
      "POST /u?ticket=canary3 HTTP/1.1\r\nusid: canary4\r\n\r\n",
      InBody("<ExecuteResponse><r xsi:type='xsd:string'>http://a/u?ticket=canary5</r></ExecuteResponse>"),
      InBody("<Execute><usid>canary&lt;6</usid><x>canary&lt;6</x></Execute>"),
      "<Execute><usid xsi:type='a'>canary7</usid><&canary7",
      "<soap:Envelope><CreateUserSessionResult>canary8</CreateUserSessionResult><&canary8"};
  for (const std::string& message : messages)
    for (const char* json : {"", "--json"}) {
      const Outcome masked = Of(message, json);
      EXPECT_FALSE(Holds(masked.out + masked.err, "canary")) << masked.out << masked.err;
    }
  EXPECT_TRUE(Holds(Of(kOpened, "--show-secrets").out, "session id: canary2"));
}

constexpr char kTape[] =
    "scriptwells tape 1\n\nsession 1\n"
    "1 execute http://127.0.0.1:8080\n"
    "> POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\\r\n> usid: <session:1>{7}\\r\n> \\r\n"
    ">> <E><B><Execute><usid><session:1>{7}</usid><Script>6 * 7</Script></Execute></B></E>\\\n"
    "< HTTP/1.1 200 OK\\r\n< Content-Length: 125\\r\n< \\r\n"
    "<< <soap:Envelope>\\\n<< <soap:Body>\\\n"
    "<< <ExecuteResponse>\\\n<< <r xsi:type=\"xsd:string\"><session:1>{7}</r>\\\n<< </ExecuteResponse>\\\n"
    "<< </soap:Body>\\\n<< </soap:Envelope>\\\n"
    "\n"
    "1 execute http://127.0.0.1:8080\n"
    "! connect 0x80070000 Connection refused\n"
    "\n";

TEST_F(Explain, ExchangesOfATape) {
  const Outcome all = Of(kTape);
  EXPECT_EQ(all.exit, 7) << all.err;
  EXPECT_TRUE(Holds(all.out, "exchange 1, line 4: execute\nrequest of Execute\n")) << all.out;
  EXPECT_TRUE(Holds(all.out, "script: 6 * 7\n")) << all.out;
  EXPECT_TRUE(Holds(all.out, "\nA client reads this answer:\n  string \"***\"\n")) << all.out;
  EXPECT_TRUE(Holds(all.out, "exchange 2, line 20: execute\nanswer of Execute\n\nThere is no answer: "))
      << all.out;
  EXPECT_TRUE(Holds(all.out, "Connection refused")) << all.out;
  const Outcome one = Of(kTape, "--entry 1 --json");
  EXPECT_EQ(one.exit, 0) << one.err;
  EXPECT_EQ(std::count(one.out.begin(), one.out.end(), '\n'), 2) << one.out;
  Of(kTape, "--entry 3").Fails(6, "the tape has 2 exchanges");
  Of(kTape, "--entry 0").Fails(2, "--entry counts from 1; try 'scriptwells explain --help'");
  EXPECT_TRUE(Holds(Of(std::string(kTape).substr(0, 300)).err, "the tape was cut"));
  EXPECT_TRUE(Holds(Of(kOpened, "--entry 1").err, "--entry is for a tape, and "));
}

TEST_F(Explain, HostileFiles) {
  EXPECT_EQ(Of("").exit, 6);
  EXPECT_EQ(Of("HTTP/1.1 200 OK").exit, 7);
  EXPECT_EQ(Of(std::string(1 << 16, '<')).exit, 7);
  const Outcome outcome =
      Of(InBody("<ExecuteResponse><r xsi:type='\x1b[31m'>\xC2\x9B</r></ExecuteResponse>"));
  EXPECT_FALSE(Holds(outcome.out, "\x1b")) << outcome.out;
  RunTool("explain").Fails(
      2, "no message given (FILE, or - for standard input); try 'scriptwells explain --help'");
}

}  // namespace
}  // namespace qv::cli
