// The requests as a server receives them, byte for byte.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include "client_fixture.h"
#include "fixtures/environment.h"
#include "fixtures/raw_server.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

using test::RawScript;
using test::RawServer;

// A request around this element, whose start lacks its namespace.
std::string Body(const std::string& name, const std::string& content) {
  return "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"><SOAP-ENV:Body><" +
         name + " xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">" + content + "</" + name +
         "></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

constexpr char kUsid[] = "<usid xsi:type=\"xsd:string\">u&amp;1</usid>";

// The script document is escaped into an element.
std::string ExecuteBody(const std::string& language, const std::string& code, const std::string& parameters) {
  return Body("Execute",
              kUsid + ("<Script xsi:type=\"xsd:string\">&lt;Scriptwell Language=&quot;" + language) +
                  "&quot; xmlns:xsi=&quot;http://www.w3.org/2001/XMLSchema-instance&quot; "
                  "xsi:schemaLocation=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0 "
                  "http://quorvane.example/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd&quot; "
                  "xmlns=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0&quot;&gt;"
                  "&lt;Code&gt;" +
                  code + "&lt;/Code&gt;&lt;/Scriptwell&gt;</Script>" + parameters);
}

std::string ParameterElement(const std::string& name, const std::string& type, const std::string& value) {
  return "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
         "<Name xsi:type=\"xsd:string\">" +
         name + "</Name><Value xsi:type=\"xsd:" + type + "\">" + value + "</Value></Parameter>";
}

const std::string kCreateBody =
    Body("CreateUserSession",
         "<ConnectionString xsi:type=\"xsd:string\">Username=J&#233;r&amp;me;Password=&lt;p&gt;;"
         "</ConnectionString>");
const std::string kCloseBody = Body("CloseUserSession", kUsid);
const std::string kExecuteNilBody = ExecuteBody(
    "VBScript", "a&amp;lt;b&amp;#233;\r\n",
    "<parameters xsi:nil=\"true\" xsi:type=\"ns1:Parameter\" "
    "xmlns:ns1=\"http://quorvane.example/dev/ns/SOF/2.0\" "
    "xmlns:ns2=\"http://schemas.xmlsoap.org/soap/encoding/\" ns2:arrayType=\"ns1:Parameter[]\"/>");
const std::string kExecuteArrayBody = ExecuteBody(
    "JavaScript", "",
    "<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
    "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" ns1:arrayType=\"ns2:Parameter[3]\">" +
        ParameterElement("a&lt;", "string", "&apos;&#55357;&#56832;") +
        ParameterElement("d", "double", "3.14159") + ParameterElement("", "boolean", "1") + "</parameters>");

constexpr char kSessionOpened[] =
    "<soap:Envelope><soap:Body><CreateUserSessionResponse><r>u&amp;1</r></CreateUserSessionResponse>"
    "</soap:Body></soap:Envelope>";
constexpr char kSessionClosed[] =
    "<soap:Envelope><soap:Body><CloseUserSessionResponse/></soap:Body></soap:Envelope>";
constexpr char kScriptRan[] =
    "<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"int\">7</r></ExecuteResponse></soap:Body>"
    "</soap:Envelope>";

bool SomebodyListensOnPort80() {
  const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(80);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool listens = connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(probe);
  return listens;
}

class WireBytes : public testing::Test {
 protected:
  void SetUp() override {
    CloseKeptConnections();
    host_ = CreateSimpleHost({u"joe"});
    NewModel(u"");
    FillFormaters();
  }
  void TearDown() override {
    model_.reset();
    CloseKeptConnections();
  }
  void NewModel(const WideString& proxy) {
    model_ = CreateConnectionModel(FromUtf8(server_.Url()), proxy, host_.get());
  }
  // A request with these parts; all else is the same for every call.
  std::string Request(const std::string& action, const std::string& length, const std::string& body) const {
    return "POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\n"
           "Host: " +
           server_.Address() +
           "\r\nContent-Type: text/xml\r\n"
           "SOAPAction: http://quorvane.example/dev/ns/ivarnel/scriptwells#" +
           action + "\r\nContent-Length: " + length + "\r\n\r\n" + body;
  }
  std::string CreateRequest() const { return Request("CreateUserSession", "429", kCreateBody); }
  std::string CloseRequest() const { return Request("CloseUserSession", "366", kCloseBody); }
  std::string NilRequest() const { return Request("Execute", "1006", kExecuteNilBody); }
  void ExpectOne(const char* answer) { server_.Expect(RawScript().Answer(answer)); }
  std::string Open() { return OutcomeText(model_->CreateUserSession(u"Username=J\u00E9r&me;Password=<p>;")); }
  std::string Close() { return OutcomeText(model_->CloseUserSession()); }
  std::string RunNil() { return Run(u"VBScript", u"a<b\u00E9\r\n", nullptr); }
  // The session opens, and the request is this one.
  void ExpectOpening() {
    ExpectOne(kSessionOpened);
    EXPECT_EQ(Open(), "ok");
    EXPECT_EQ(server_.AllReceived(), CreateRequest());
  }
  std::string Run(const WideString& language, const WideString& script, IParameters* parameters) {
    Variant result;
    const HRESULT code = model_->Execute(language, script, parameters, &result);
    return code == S_OK ? ShownValue(result) : OutcomeText(code);
  }

  RawServer server_;
  IQvClientServicesPtr host_;
  IConnectionModelPtr model_;
};

TEST_F(WireBytes, OpeningASession) {
  ExpectOpening();
}

TEST_F(WireBytes, ClosingASession) {
  ExpectOne(kSessionClosed);
  ASSERT_EQ(model_->SetUSID(u"u&1"), S_OK);
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(server_.AllReceived(), CloseRequest());
}

TEST_F(WireBytes, ScriptWithoutParameters) {
  ExpectOne(kScriptRan);
  ASSERT_EQ(model_->SetUSID(u"u&1"), S_OK);
  EXPECT_EQ(RunNil(), "VT_INT 7");
  EXPECT_EQ(server_.AllReceived(), NilRequest());
}

TEST_F(WireBytes, ScriptWithParameters) {
  ExpectOne(kScriptRan);
  ASSERT_EQ(model_->SetUSID(u"u&1"), S_OK);
  const IParametersPtr list = ParameterList({{u"a<", Variant::FromString(u"'\U0001F600")},
                                             {u"d", Variant::FromDouble(3.14159265)},
                                             {nullptr, Variant::FromBool(true)}});
  EXPECT_EQ(Run(u"JavaScript", u"", list.get()), "VT_INT 7");
  EXPECT_EQ(server_.AllReceived(), Request("Execute", "1458", kExecuteArrayBody));
}

TEST_F(WireBytes, CallsFollowEachOtherOnOneConnection) {
  RawScript script;
  for (const char* answer : {kSessionOpened, kScriptRan, kSessionClosed})
    script.Answer(answer, "Set-Cookie: c=1\r\n");
  server_.Expect(script);
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(RunNil(), "VT_INT 7");
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(server_.Connections(), 1U);
  EXPECT_EQ(server_.AllReceived(), CreateRequest() + NilRequest() + CloseRequest());
}

TEST_F(WireBytes, AnswerInSinglePiecesIsReadWhole) {
  server_.Expect(RawScript().ReadRequest().WriteByteByByte(test::RawAnswerText(kScriptRan)));
  ASSERT_EQ(model_->SetUSID(u"u&1"), S_OK);
  EXPECT_EQ(RunNil(), "VT_INT 7");
}

TEST_F(WireBytes, RedirectIsNotFollowed) {
  server_.Expect(RawScript().Reply("HTTP/1.1 302 Found\r\nLocation: " + server_.Url() +
                                   "/other\r\nContent-Length: 5\r\n\r\nmoved"));
  EXPECT_EQ(Open(), "0x80020009 The respone that arrived is not valid");
  EXPECT_EQ(server_.AllReceived(), CreateRequest());
}

TEST_F(WireBytes, ResetWhileTheAnswerIsAwaitedSendsNothingAgain) {
  server_.Expect(RawScript().ReadRequest().Reset());
  ExpectOne(kSessionOpened);
  EXPECT_EQ(Open().substr(0, 11), "0x80020009 ");
  EXPECT_EQ(server_.Connections(), 1U);
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(server_.Connections(), 2U);
}

// Found closed before anything was sent, so that nothing can have been run.
TEST_F(WireBytes, KeptConnectionThatWasClosedIsReplaced) {
  server_.Expect(RawScript().Answer(kSessionOpened).Close());
  ExpectOne(kSessionClosed);
  EXPECT_EQ(Open(), "ok");
  ASSERT_TRUE(server_.WaitForClosed(1));
  EXPECT_EQ(Close(), "ok");
  EXPECT_EQ(server_.Connections(), 2U);
  EXPECT_EQ(server_.AllReceived(), CreateRequest() + CloseRequest());
}

TEST_F(WireBytes, ProxyOfTheEnvironmentIsNotUsed) {
  RawServer proxy;
  const std::string url = proxy.Url();
  const EnvironmentVariable variables[] = {{"http_proxy", url.c_str()},
                                           {"HTTP_PROXY", url.c_str()},
                                           {"https_proxy", url.c_str()},
                                           {"all_proxy", url.c_str()},
                                           {"ALL_PROXY", url.c_str()}};
  ExpectOpening();
  EXPECT_EQ(proxy.Connections(), 0U);
}

TEST_F(WireBytes, PlaceholderMeansNoProxy) {
  NewModel(u"@PROXY@");
  ExpectOpening();
}

// The port of a proxy text does not reach the component, so both go to port 80.
TEST_F(WireBytes, ProxyIsLookedForOnPort80) {
  if (SomebodyListensOnPort80()) GTEST_SKIP() << "port 80 of this machine is in use";
  RawServer proxy;
  for (const std::string& text : {std::string("127.0.0.1"), proxy.Address()}) {
    NewModel(FromUtf8(text));
    EXPECT_EQ(Open(), "0x80020009 Cannot create a soap call.");
  }
  EXPECT_EQ(proxy.Connections(), 0U);
  EXPECT_EQ(server_.Connections(), 0U);
}

}  // namespace
}  // namespace qv
