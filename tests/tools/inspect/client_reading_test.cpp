// What `explain` says about answers agrees with what a session of the library makes of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "devservice/http/odd_forms.h"
#include "fixtures/temporary_directory.h"
#include "scriptwells/session.h"
#include "tests/tools/process.h"
#include "tools/inspect/explained_message.h"
#include "tools/transfer/failed_call.h"

namespace qv::cli {
namespace {

namespace fs = std::filesystem;
using scriptwells::Session;
using scriptwells::Value;

std::string ReadSource(const fs::path& path) {
  std::ifstream file(fs::path(SOURCE_FOLDER) / path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// "int 42", or "! no such customer".
std::string TextOf(const ClientReading& reading) {
  std::string text = reading.message.empty() ? "" : "! " + reading.message + "\n";
  for (const std::string& line : reading.value) text += line + "\n";
  return text;
}

std::string TextOf(const Value& value) {
  std::string text;
  for (const std::string& line : scriptwells::ShownLines(value)) text += line + "\n";
  return text;
}

std::string NamesOf(const ExplainedMessage& explained) {
  std::string names;
  for (const ShownFinding& finding : explained.findings)
    names += (names.empty() ? "" : " ") + std::string(RowOf(finding.rule).id);
  return names;
}

// A server that breaks these gives clients another value than it means, and they read on.
constexpr Rule kReadAnyway[] = {Rule::kOneValue,  Rule::kFaultText, Rule::kValueInPlace,
                                Rule::kNullValue, Rule::kValueText, Rule::kCellCount};

// Whether a rule is broken that clients cannot do without. White space in a table makes further rows.
bool NamesABreach(const ExplainedMessage& explained) {
  const std::vector<std::string>& value = explained.reading->value;
  const bool isTable = !value.empty() && value.front().rfind("table", 0) == 0;
  return std::any_of(explained.findings.begin(), explained.findings.end(), [&](const ShownFinding& finding) {
    const bool isReadOn =
        (isTable && finding.rule == Rule::kWhiteSpace) ||
        std::find(std::begin(kReadAnyway), std::end(kReadAnyway), finding.rule) != std::end(kReadAnyway);
    return !RowOf(finding.rule).isLoss && !isReadOn;
  });
}

// A rule explains each answer that is refused, and an answer that breaks none is one that clients read.
void ExpectAgreement(const ExplainedMessage& explained, const std::string& what) {
  if (explained.reading->result == ReadAs::kFile || (explained.lines.empty() && explained.findings.empty()))
    return;
  const std::string names = NamesOf(explained);
  if (explained.IsRefused())
    EXPECT_TRUE(!names.empty() && names != "understood") << what << "\n" << TextOf(*explained.reading);
  else
    EXPECT_FALSE(NamesABreach(explained)) << what << ", " << names << "\n" << TextOf(*explained.reading);
}

std::vector<ExplainedMessage> AnswersOf(const std::string& file, const std::string& method = "") {
  std::vector<ExplainedMessage> answers;
  for (ExplainedMessage& explained : ExplainMessages("a", file, 0, method, true))
    if (explained.reading) answers.push_back(std::move(explained));
  return answers;
}

// Sessions on a service, with a tape, and what their calls came to.
class RecordedCalls {
 public:
  explicit RecordedCalls(const std::string& tape) : tape_(tape) {}

  // One after the other on the same session, opened where nothing is odd.
  void RunAt(const std::string& url, const std::string& oddUrl, const std::vector<std::string>& scripts) {
    Session plain(url, {"joe", ""});
    scriptwells::Options options;
    options.record = tape_;
    options.silenceTimeout = std::chrono::milliseconds(700);
    Note([&] {
      Session session(oddUrl, {"joe", ""}, options);
      return "the id of a session, " + std::to_string(session.Release().size()) + " bytes\n";
    });
    Session odd = Session::Adopt(oddUrl, plain.Id(), options);
    for (const std::string& script : scripts) Note([&] { return TextOf(odd.Run(script)); });
  }

  std::string Tape() const { return TemporaryText(tape_); }
  const std::vector<std::string>& Outcomes() const noexcept { return outcomes_; }

 private:
  static std::string TemporaryText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  void Note(const std::function<std::string()>& call) {
    try {
      outcomes_.push_back(call());
    } catch (const scriptwells::Error& error) {
      outcomes_.push_back("! " + FailureOf(error).Message() + "\n");
    }
  }

  const std::string tape_;
  std::vector<std::string> outcomes_;
};

constexpr char kTable[] =
    "[{city: 'Rome', people: 2748109, day: new Date(0)}, {city: 'Oslo', people: 709037, day: new Date(1e9)}]";

TEST(ClientReading, IsWhatASessionMadeOfOddAnswers) {
  const testing::ServeProcess service;
  const TemporaryDirectory folder;
  for (const devservice::OddName& odd : devservice::OddNames()) {
    if (odd.use != devservice::OddUse::kCalls) continue;
    const std::string name(odd.name);
    RecordedCalls calls(folder.Path(name + ".tape"));
    calls.RunAt(service.Url(), service.Url() + "/odd/" + name,
                {"6 * 7", "'a < b'", kTable, "throw new ScriptError(5, 'no such customer')"});
    const std::vector<ExplainedMessage> answers = AnswersOf(calls.Tape());
    ASSERT_EQ(answers.size(), calls.Outcomes().size()) << name;
    for (std::size_t i = 0; i < answers.size(); ++i) {
      EXPECT_EQ(TextOf(*answers[i].reading), calls.Outcomes()[i]) << name;
      ExpectAgreement(answers[i], name + ", call " + std::to_string(i));
    }
  }
}

TEST(ClientReading, AgreesOnTheTapesOfTheDocuments) {
  int answers = 0;
  for (const char* directory : {"tests/documents/tapes", "fuzz/seeds/tape"})
    for (const auto& entry : fs::directory_iterator(fs::path(SOURCE_FOLDER) / directory))
      for (const ExplainedMessage& answer : AnswersOf(ReadSource(entry.path()))) {
        ExpectAgreement(answer, entry.path().filename().string() + ", " + answer.title);
        ++answers;
      }
  EXPECT_GT(answers, 50);
}

TEST(ClientReading, AgreesOnSavedAnswers) {
  int answers = 0;
  for (const char* directory : {"fuzz/seeds/soap_answer", "fuzz/seeds/http_answer", "fuzz/seeds/xml"})
    for (const auto& entry : fs::directory_iterator(fs::path(SOURCE_FOLDER) / directory))
      for (const ExplainedMessage& answer : AnswersOf(ReadSource(entry.path()))) {
        ExpectAgreement(answer, entry.path().string());
        ++answers;
      }
  EXPECT_GT(answers, 10);
}

std::string InBody(const std::string& content) {
  return "<soap:Envelope><soap:Body>" + content + "</soap:Body></soap:Envelope>";
}

std::string Answered(const std::string& value) {
  return InBody("<ExecuteResponse>" + value + "</ExecuteResponse>");
}

std::string TableOf(const std::string& columns, const std::string& rows) {
  return Answered("<r xsi:type='q:RecordList'><h><s>" + columns + "</s></h><d>" + rows + "</d></r>");
}

TEST(ClientReading, AgreesOnEnvelopes) {
  const std::string value = "<r xsi:type='xsd:int'>1</r>";
  const std::string answer = "<ExecuteResponse>" + value + "</ExecuteResponse>";
  const std::string envelopes[] = {
      InBody(answer),
      InBody(" " + answer),
      InBody(answer + " "),
      InBody(answer + "<other/>"),
      InBody("<!-- a -->" + answer),
      InBody(answer + "<!-- a -->"),
      InBody("<?a?>" + answer),
      "<soap:Envelope> <soap:Body>" + answer + "</soap:Body></soap:Envelope>",
      "<soap:Envelope><soap:Body>" + answer + "</soap:Body> </soap:Envelope>",
      "<soap:Envelope><soap:Header/><soap:Body>" + answer + "</soap:Body></soap:Envelope>",
      "<soap:Envelope><soap:Body>" + answer + "</soap:Body><soap:Header/></soap:Envelope>",
      "<soap:Envelope><Body>" + answer + "</Body></soap:Envelope>",
      "<soap:Envelope><b>" + answer + "</b></soap:Envelope>",
      "<soap:Envelope>" + answer + "</soap:Envelope>",
      "<soap:Envelope/>",
      "<SOAP:Envelope><soap:Body>" + answer + "</soap:Body></SOAP:Envelope>",
      "<S:Envelope><S:Body>" + answer + "</S:Body></S:Envelope>",
      "<Envelope><Body>" + answer + "</Body></Envelope>",
      "<!-- soap:Envelope --><Envelope><Body>" + answer + "</Body></Envelope>",
      "<?xml version='1.0' encoding='utf-8'?>\n" + InBody(answer) + "\n",
      "<?xml version='1.0'?><!-- a -->" + InBody(answer),
      "<!DOCTYPE a []>" + InBody(answer),
      InBody(answer) + "x",
      InBody(answer).substr(0, 60),
      InBody("<m:ExecuteResponse>" + value + "</m:ExecuteResponse>"),
      InBody("<NS2:ExecuteResponse>" + value + "</NS2:ExecuteResponse>"),
      InBody("<executeResponse>" + value + "</executeResponse>"),
      InBody("<OtherResponse>" + value + "</OtherResponse>"),
      InBody("<a>" + answer + "</a>"),
      InBody("<ExecuteResponse/>"),
      InBody("<ExecuteResponse> </ExecuteResponse>"),
      InBody("<ExecuteResponse>42</ExecuteResponse>"),
      InBody("<ExecuteResponse> " + value + "</ExecuteResponse>"),
      InBody("<ExecuteResponse>" + value + " </ExecuteResponse>"),
      InBody("<ExecuteResponse><!-- a -->" + value + "</ExecuteResponse>"),
      InBody("<ExecuteResponse>" + value + value + "</ExecuteResponse>"),
      InBody("<CloseUserSessionResponse/>"),
      InBody("<CreateUserSessionResponse><r>1</r></CreateUserSessionResponse>"),
      InBody("<CreateUserSessionResponse><r/></CreateUserSessionResponse>"),
      InBody("<CreateUserSessionResponse> <r>1</r></CreateUserSessionResponse>"),
      InBody("<CreateUserSessionResponse>1</CreateUserSessionResponse>"),
      InBody("<CreateUserSessionResponse/>"),
      InBody("<CreateUserSessionResponse><r><b/>1</r></CreateUserSessionResponse>"),
      InBody("<NS2:CreateUserSessionResponse><r>1</r></NS2:CreateUserSessionResponse>"),
      InBody("<soap:Fault><faultstring>a</faultstring></soap:Fault>"),
      InBody("<soap:Fault><faultstring/></soap:Fault>"),
      InBody("<soap:Fault><soap:faultstring>a</soap:faultstring></soap:Fault>"),
      InBody("<soap:Fault><detail><faultstring>a</faultstring></detail></soap:Fault>"),
      InBody("<soap:Fault/>"),
      InBody("<SOAP:Fault><faultstring>a</faultstring></SOAP:Fault>"),
      InBody(" <soap:Fault> <faultstring>a</faultstring></soap:Fault>"),
      InBody(answer + "<soap:Fault><faultstring>a</faultstring></soap:Fault>"),
      InBody("<a><soap:Fault><faultstring>a</faultstring></soap:Fault></a>"),
      InBody("<soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/errorCode&gt;"
             "&lt;/ErrorObject&gt;</faultstring></soap:Fault>"),
      InBody(
          "<soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;a&lt;/ErrorObject&gt;</faultstring></soap:Fault>"),
      "<html><body>404</body></html>",
      "plain text",
      "soap:Envelope",
  };
  for (const std::string& envelope : envelopes)
    for (const ExplainedMessage& explained : AnswersOf(envelope)) ExpectAgreement(explained, envelope);
}

TEST(ClientReading, AgreesOnValues) {
  const char* const values[] = {
      "<r xsi:type='xsd:boolean'>true</r>",
      "<r xsi:type='xsd:boolean'>TRUE</r>",
      "<r xsi:type='xsd:boolean'>yes</r>",
      "<r xsi:type='xsd:boolean'> true</r>",
      "<r xsi:type='xsd:boolean'/>",
      "<r xsi:type='xsd:int'>12 apples</r>",
      "<r xsi:type='xsd:int'>apples</r>",
      "<r xsi:type='xsd:int'> 12 </r>",
      "<r xsi:type='xsd:int'>+12</r>",
      "<r xsi:type='xsd:int'>0x12</r>",
      "<r xsi:type='xsd:int'>2147483648</r>",
      "<r xsi:type='xsd:int'>-2147483648</r>",
      "<r xsi:type='xsd:int'>99999999999999999999</r>",
      "<r xsi:type='xsd:int'>1.5</r>",
      "<r xsi:type='xsd:int'/>",
      "<r xsi:type='xsd:int'><!-- a -->5</r>",
      "<r xsi:type='xsd:int'>5<!-- a -->6</r>",
      "<r xsi:type='xsd:int'><b>5</b></r>",
      "<r xsi:type='xsd:int'><![CDATA[5]]></r>",
      "<r xsi:type='xsd:short'>-32768</r>",
      "<r xsi:type='xsd:short'>32768</r>",
      "<r xsi:type='xsd:double'>1e3</r>",
      "<r xsi:type='xsd:double'>1e999</r>",
      "<r xsi:type='xsd:double'>INF</r>",
      "<r xsi:type='xsd:double'>NaN</r>",
      "<r xsi:type='xsd:double'>1,5</r>",
      "<r xsi:type='xsd:double'/>",
      "<r xsi:type='xsd:float'>0.5</r>",
      "<r xsi:type='float'>0.5</r>",
      "<r xsi:type='FLOAT'>0.5</r>",
      "<r xsi:type='xsd:string'>a</r>",
      "<r xsi:type='xsd:string'> </r>",
      "<r xsi:type='xsd:string'/>",
      "<r xsi:type='xsd:string'>a<b/>c</r>",
      "<r xsi:type='xsd:string'>a<!-- b -->c</r>",
      "<r xsi:type='xs:int'>1</r>",
      "<r xsi:type='int'>1</r>",
      "<r xsi:type=' int'>1</r>",
      "<r xsi:type=''>1</r>",
      "<r x:type='xsd:int'>1</r>",
      "<r type='xsd:int'>1</r>",
      "<r>1</r>",
      "<r xsi:type='xsd:long'>1</r>",
      "<r xsi:type='xsd:byte'>1</r>",
      "<r xsi:nil='true'/>",
      "<r xsi:nil='true' xsi:type='xsd:int'/>",
      "<r xsi:nil='false' xsi:type='xsd:int'>1</r>",
      "<r xsi:null='1' xsi:type='xsd:int'>1</r>",
      "<r href='#1'/>",
      "<r href='#1' xsi:type='xsd:int'>1</r>",
      "<r xsi:type='xsd:date'>2024-02-29</r>",
      "<r xsi:type='xsd:date'>2024-02-30</r>",
      "<r xsi:type='xsd:date'>2023-02-29</r>",
      "<r xsi:type='xsd:date'>2024-13-01</r>",
      "<r xsi:type='xsd:date'>2024-3-5</r>",
      "<r xsi:type='xsd:date'>2024-03</r>",
      "<r xsi:type='xsd:date'>20240305</r>",
      "<r xsi:type='xsd:date'>0000-01-01</r>",
      "<r xsi:type='xsd:date'>12024-01-01</r>",
      "<r xsi:type='xsd:date'>-0044-03-15</r>",
      "<r xsi:type='xsd:date'>2024-03-05Z</r>",
      "<r xsi:type='xsd:date'>2024-03-05+02:00</r>",
      "<r xsi:type='xsd:date'>2024-03-05T10:15:30Z</r>",
      "<r xsi:type='xsd:date'>a</r>",
      "<r xsi:type='xsd:date'/>",
      "<r xsi:type='xsd:time'>10:15:30</r>",
      "<r xsi:type='xsd:time'>10:15:30Z</r>",
      "<r xsi:type='xsd:time'>10:15:30.5Z</r>",
      "<r xsi:type='xsd:time'>10:15:30+02:00</r>",
      "<r xsi:type='xsd:time'>10:15</r>",
      "<r xsi:type='xsd:time'>25:00:00</r>",
      "<r xsi:type='xsd:time'>24:00:00</r>",
      "<r xsi:type='xsd:time'/>",
      "<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30Z</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05 10:15:30</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30.7Z</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30.000Z</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30+02:00</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30+24:00</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30+00:00</r>",
      "<r xsi:type='xsd:dateTime'>2024-03T10:15:30Z</r>",
      "<r xsi:type='xsd:dateTime'>2024-03-05</r>",
      "<r xsi:type='xsd:datetime'>2024-03-05T10:15:30Z</r>",
      "<r xsi:type='xsd:dateTime'/>",
      "<r xsi:type='xsd:duration'>P1DT2H</r>",
      "<r xsi:type='xsd:duration'>-P1Y2M3DT4H5M6.5S</r>",
      "<r xsi:type='xsd:duration'>P</r>",
      "<r xsi:type='xsd:duration'>PT</r>",
      "<r xsi:type='xsd:duration'>p1d</r>",
      "<r xsi:type='xsd:duration'>P3D1Y</r>",
      "<r xsi:type='xsd:duration'>PT1.23457e+007S</r>",
      "<r xsi:type='xsd:duration'>P99999Y</r>",
      "<r xsi:type='xsd:duration'>1D</r>",
      "<r xsi:type='xsd:duration'/>",
      "<r xsi:type='sof:url'>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;</r>",
      "<r xsi:type='sof:URL'>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;</r>",
      "<r xsi:type='sof:url'>http://a</r>",
      "<r xsi:type='sof:url'/>",
      "<r xsi:type='xsd:decimal'>1.5</r>",
      "<r xsi:type='xsd:integer'>1</r>",
      "<r xsi:type='xsd:base64Binary'>MQ==</r>",
      "<r xsi:type='xsd:anyType'>1</r>",
      "<r xsi:type='soapenc:Array'><i xsi:type='xsd:int'>1</i></r>",
  };
  for (const char* value : values)
    for (const ExplainedMessage& explained : AnswersOf(Answered(value))) ExpectAgreement(explained, value);
}

TEST(ClientReading, AgreesOnTables) {
  const std::string names[] = {"xsd:int",
                               "xsd:string",
                               "xsd:date",
                               "xsd:time",
                               "xsd:dateTime",
                               "xsd:boolean",
                               "xsd:double",
                               "xsd:duration",
                               "sof:URL",
                               "qvdt:Blob",
                               "xsd:decimal",
                               "xsd:byte",
                               ""};
  const char* const cells[] = {"<v>1</v>",
                               "<v/>",
                               "<v>a</v>",
                               "<v>2024-03-05</v>",
                               "<v>10:15:30</v>",
                               "<v>2024-03-05T10:15:30Z</v>",
                               "<v>P1D</v>",
                               "<v>true</v>",
                               "<v> </v>",
                               "<v>2024-03-05T10:15:30.5+02:00</v>",
                               "<v><b>1</b></v>",
                               "<v>99999999999</v>",
                               "<v>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;</v>"};
  for (const std::string& name : names)
    for (const char* cell : cells) {
      const std::string table =
          TableOf("<c xsd:name='a' xsd:type='" + name + "'/>", std::string("<w>") + cell + "</w>");
      for (const ExplainedMessage& explained : AnswersOf(table))
        ExpectAgreement(explained, name + " " + cell);
    }
  const std::string column = "<c xsd:name='a' xsd:type='xsd:int'/>";
  const std::string tables[] = {
      TableOf(column, ""),
      TableOf("", ""),
      TableOf("", "<w/>"),
      TableOf(column, " <w><v>1</v></w>"),
      TableOf(column, "<w><v>1</v></w> "),
      TableOf(column, "<w> <v>1</v></w>"),
      TableOf(column, "<w><v>1</v> </w>"),
      TableOf(column, "<!-- a --><w><v>1</v></w>"),
      TableOf(" " + column, "<w><v>1</v></w>"),
      TableOf(column + " ", "<w><v>1</v></w>"),
      TableOf(column, "<w/>"),
      TableOf(column, "<w><v>1</v><v>2</v></w>"),
      TableOf(column + column, "<w><v>1</v></w>"),
      TableOf("<c name='a' type='xsd:int'/>", "<w><v>1</v></w>"),
      TableOf("<c xsd:name='a'/>", "<w><v>1</v></w>"),
      TableOf("<c xsd:type='xsd:int'/>", "<w><v>1</v></w>"),
      TableOf("<c xsd:name='' xsd:type='xsd:int'/>", "<w><v>1</v></w>"),
      Answered("<r xsi:type='recordlist'/>"),
      Answered("<r xsi:type='recordlist'><h/></r>"),
      Answered("<r xsi:type='recordlist'><h/><d/></r>"),
      Answered("<r xsi:type='recordlist'><h><s/></h></r>"),
      Answered("<r xsi:type='recordlist'><h><s/></h><d/></r>"),
      Answered("<r xsi:type='recordlist'><h><s>" + column + "</s></h><d><w><v>1</v></w></d><e/></r>"),
      Answered("<r xsi:type='recordlist'> <h><s>" + column + "</s></h><d><w><v>1</v></w></d></r>"),
      Answered("<r xsi:type='recordlist'><h><s>" + column + "</s></h> <d><w><v>1</v></w></d></r>"),
      Answered("<r xsi:type='recordlist'><h><s>" + column + "</s></h><d><w><v>1</v></w></d> </r>"),
      Answered("<r xsi:type='recordlist'><h> <s>" + column + "</s></h><d><w><v>1</v></w></d></r>"),
      Answered("<r xsi:type='recordlist'><h><s>" + column + "</s> </h><d><w><v>1</v></w></d></r>"),
      Answered("<r xsi:type='recordlist'><d><w><v>1</v></w></d><h><s>" + column + "</s></h></r>"),
  };
  for (const std::string& table : tables)
    for (const ExplainedMessage& explained : AnswersOf(table)) ExpectAgreement(explained, table);
}

TEST(ClientReading, AgreesOnHeads) {
  const std::string body = Answered("<r xsi:type='xsd:int'>1</r>");
  const std::string length = "Content-Length: " + std::to_string(body.size()) + "\r\n";
  const std::string messages[] = {
      "HTTP/1.1 200 OK\r\n" + length + "\r\n" + body,
      "HTTP/1.0 200 OK\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\n" + length + "\n" + body,
      "HTTP/1.1 500 Error\r\n" + length + "\r\n" + body,
      "HTTP/1.1 404 Not Found\r\n" + length + "\r\n" + body,
      "HTTP/1.1 302 Found\r\nLocation: /b\r\n" + length + "\r\n" + body,
      "HTTP/1.1 204 No Content\r\n\r\n",
      "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n",
      "HTTP/1.1 200 OK\r\nContent-Length: x\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\n" + length + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\n" + length + "Content-Length: 1\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\n" + length + "Content-Encoding: gzip\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\n" + length + "Content-Encoding: identity\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string("5\r\n") + body.substr(0, 5) +
          "\r\n0\r\n\r\n",
      "HTTP/1.1 200 OK\r\n" + length + "Transfer-Encoding: identity\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=klingon\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=iso-8859-1\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-16\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\n bad\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\nno colon\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200" + std::string(3, '\0') + " OK\r\n" + length + "\r\n" + body,
      "HTTP/1.1 abc OK\r\n" + length + "\r\n" + body,
      "HTTP/2 200\r\n" + length + "\r\n" + body,
      "HTTP/1.1 200 OK\r\n" + length + "\r\n" + body + "more",
      "HTTP/1.1 200 OK",
  };
  for (const std::string& message : messages)
    for (const ExplainedMessage& explained : AnswersOf(message, "Execute"))
      ExpectAgreement(explained, message);
}

}  // namespace
}  // namespace qv::cli
