#include <gtest/gtest.h>

#include <memory>

#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "script/execute_command.h"
#include "soap/soap_call.h"

namespace qv {
namespace {

constexpr char16_t kClosed[] =
    u"<soap:Envelope><soap:Body><CloseUserSessionResponse/></soap:Body></soap:Envelope>";
constexpr char16_t kFaultFive[] =
    u"<soap:Envelope><soap:Body><soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/"
    u"errorCode&gt;"
    u"&lt;description&gt;No such table&lt;/description&gt;&lt;/ErrorObject&gt;</faultstring></soap:Fault>"
    u"</soap:Body></soap:Envelope>";

class SoapCall : public testing::Test {
 protected:
  void SetUp() override { EnsureFormaters(); }

  CSOAPResponse Run(const WideString& action, const NamedArguments& map) {
    return CSOAPCall().Run(CQvUrl(u"http://srv/a"), action, u"ignored", map);
  }
  std::string RunThrows(const WideString& action, const NamedArguments& map) {
    return Thrown([&] { Run(action, map); });
  }
  static NamedArguments CloseMap() { return {{u"ContextHandle", Variant::FromString(u"u1")}}; }
  static NamedArguments ExecuteMap() {
    return {{u"ContextHandle", Variant::FromString(u"u1")},
            {u"ScriptLanguage", Variant::FromString(u"JavaScript")},
            {u"Script", Variant::FromString(u"1")}};
  }

  FakeHttp http_;
};

TEST_F(SoapCall, CreateUserSessionGetsItsCommand) {
  CSOAPCall call;
  call.SetAction(u"CreateUserSession");
  const std::unique_ptr<CQvCommand> command(call.CreateCommand());
  EXPECT_NE(dynamic_cast<CCreateSessionCommand*>(command.get()), nullptr);
}

TEST_F(SoapCall, CloseUserSessionGetsItsCommand) {
  CSOAPCall call;
  call.SetAction(u"CloseUserSession");
  const std::unique_ptr<CQvCommand> command(call.CreateCommand());
  EXPECT_NE(dynamic_cast<CReleaseSessionCommand*>(command.get()), nullptr);
}

TEST_F(SoapCall, ExecuteGetsItsCommand) {
  CSOAPCall call;
  call.SetAction(u"Execute");
  const std::unique_ptr<CQvCommand> command(call.CreateCommand());
  EXPECT_NE(dynamic_cast<CExecuteCommand*>(command.get()), nullptr);
}

TEST_F(SoapCall, OtherActionsGetNoCommand) {
  for (const char16_t* action : {u"DownloadFile", u"ExecuteFile", u"execute", u"Execute ",
                                 u"CreateUserSessio", u"CLOSEUSERSESSION", u""}) {
    CSOAPCall call;
    call.SetAction(action);
    EXPECT_EQ(call.CreateCommand(), nullptr) << Shown(action);
  }
  EXPECT_EQ(CSOAPCall().CreateCommand(), nullptr);
}

TEST_F(SoapCall, ActionWithNullUnitInsideIsAnotherAction) {
  CSOAPCall call;
  call.SetAction(WideString(std::u16string_view(u"Execute\0x", 9)));
  EXPECT_EQ(call.CreateCommand(), nullptr);
}

TEST_F(SoapCall, ProxyIsTheTextUnderItsKey) {
  EXPECT_EQ(Shown(CSOAPCall::GetProxy({{u"Proxy", Variant::FromString(u"p")}})), "p");
}

TEST_F(SoapCall, AbsentProxyIsEmptyAndNotNull) {
  EXPECT_EQ(Shown(CSOAPCall::GetProxy({})), "");
}

TEST_F(SoapCall, ProxyThatIsNoTextIsEmpty) {
  EXPECT_TRUE(CSOAPCall::GetProxy({{u"Proxy", Variant::FromInt(7)}}).IsEmpty());
}

TEST_F(SoapCall, CookieIsTheTextUnderItsKey) {
  EXPECT_EQ(Shown(CSOAPCall::GetCookieHandle({{u"CookieHandle", Variant::FromString(u"c")}})), "c");
}

TEST_F(SoapCall, AbsentCookieIsEmptyAndNotNull) {
  EXPECT_EQ(Shown(CSOAPCall::GetCookieHandle({})), "");
}

TEST_F(SoapCall, NullCookieStaysNull) {
  EXPECT_TRUE(CSOAPCall::GetCookieHandle({{u"CookieHandle", Variant::FromString(WideString())}}).IsNull());
}

TEST_F(SoapCall, ProxyPortIsLowSixteenBits) {
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Variant::FromInt(8080)}}), 8080);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Variant::FromInt(0x12345)}}), 0x2345);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Variant::FromInt(-1)}}), 65535);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Variant::FromLong(0x100001F90)}}), 8080);
}

TEST_F(SoapCall, AbsentProxyPortIsZero) {
  EXPECT_EQ(CSOAPCall::GetProxyPort({}), 0);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Variant()}}), 0);
}

TEST_F(SoapCall, UnknownActionIsRefusedBeforeAnyExchange) {
  EXPECT_EQ(RunThrows(u"DownloadFile", CloseMap()), "EQvException 0x00000000 Cannot create a soap call.");
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(SoapCall, MapWithoutProxyAndCookieOpensWithEmptyProxyAndSendsNoCookie) {
  http_.Answer(kClosed);
  Run(u"CloseUserSession", CloseMap());
  EXPECT_EQ(http_.CallsNamed("Open("), std::vector<std::string>{"Open(http, srv, 80, <null>, <null>, )"});
  EXPECT_EQ(http_.CallsNamed("SetHeader(").size(), 3u);
}

TEST_F(SoapCall, ProxyTravelsAsBareNameAndCookieAsHeader) {
  http_.Answer(kClosed);
  NamedArguments map = CloseMap();
  map.insert({u"Proxy", Variant::FromString(u"proxy")});
  map.insert({u"ProxyPort", Variant::FromInt(8080)});
  map.insert({u"CookieHandle", Variant::FromString(u"k=v")});
  Run(u"CloseUserSession", map);
  EXPECT_EQ(http_.CallsNamed("Open("),
            std::vector<std::string>{"Open(http, srv, 80, <null>, <null>, proxy)"});
  EXPECT_EQ(http_.CallsNamed("SetHeader(Cookie"), std::vector<std::string>{"SetHeader(Cookie, k=v)"});
}

TEST_F(SoapCall, EnvelopeOfTheActionGoesOutOnceWithoutItsNull) {
  http_.Answer(kClosed);
  Run(u"CloseUserSession", CloseMap());
  EXPECT_EQ(http_.Bodies(),
            std::vector<std::string>{
                "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
                "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
                "<SOAP-ENV:Body>"
                "<CloseUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                "<usid xsi:type=\"xsd:string\">u1</usid>"
                "</CloseUserSession></SOAP-ENV:Body></SOAP-ENV:Envelope>"});
}

TEST_F(SoapCall, EmptyValueIsNoFailure) {
  http_.Answer(kClosed);
  EXPECT_EQ(Run(u"CloseUserSession", CloseMap()).Value().Tag(), VT_EMPTY);
}

TEST_F(SoapCall, CookieOfTheResponseIsNull) {
  http_.Answer(kClosed);
  EXPECT_TRUE(Run(u"CloseUserSession", CloseMap()).Cookie().IsNull());
}

TEST_F(SoapCall, ValueOfTheAnswerIsReturned) {
  http_.Answer(
      u"<soap:Envelope><soap:Body><ExecuteResponse><r "
      u"xsi:type=\"xsd:int\">42</r></ExecuteResponse></soap:Body>"
      u"</soap:Envelope>");
  const Variant value = Run(u"Execute", ExecuteMap()).Value();
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 42);
}

TEST_F(SoapCall, NullMarkInTheAnswerIsNoValidResponse) {
  http_.Answer(
      u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:null=\"0\">42</r></ExecuteResponse></soap:Body>"
      u"</soap:Envelope>");
  EXPECT_EQ(RunThrows(u"Execute", ExecuteMap()),
            "EQvException 0x00000000 The respone that arrived is not valid");
}

TEST_F(SoapCall, AnswerWithoutValueElementIsNoValidResponse) {
  http_.Answer(u"<soap:Envelope><soap:Body><ExecuteResponse/></soap:Body></soap:Envelope>");
  EXPECT_EQ(RunThrows(u"Execute", ExecuteMap()),
            "EQvException 0x00000000 The respone that arrived is not valid");
}

TEST_F(SoapCall, FaultKeepsItsWordsAndNumber) {
  http_.Answer(kFaultFive);
  EXPECT_EQ(RunThrows(u"CloseUserSession", CloseMap()), "EQvException 0x80040005 No such table");
}

TEST_F(SoapCall, ParseErrorKeepsItsPlace) {
  http_.Answer(u"<soap:Envelope>\n<a>\n</b></soap:Envelope>");
  EXPECT_EQ(
      RunThrows(u"CloseUserSession", CloseMap()),
      "EQvException 0x00000000 Error at file application/xml, line 3, char 3  Message: application/xml");
}

TEST_F(SoapCall, TransferFailureKeepsTheComponentsWords) {
  http_.Fail(HttpStep::kSend, E_FAIL, u"connection reset");
  EXPECT_EQ(RunThrows(u"CloseUserSession", CloseMap()), "EQvException 0x00000000 connection reset");
}

TEST_F(SoapCall, ServerThatCannotBeReachedLosesItsWords) {
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route to host");
  EXPECT_EQ(RunThrows(u"CloseUserSession", CloseMap()), "EQvException 0x00000000 Cannot create a soap call.");
}

TEST_F(SoapCall, NullRequestIsACallThatCannotBeCreated) {
  http_.GiveNullRequest();
  EXPECT_EQ(RunThrows(u"CloseUserSession", CloseMap()), "EQvException 0x00000000 Cannot create a soap call.");
}

TEST_F(SoapCall, MissingKeyOfASessionCommandIsACallThatCannotBeCreated) {
  EXPECT_EQ(RunThrows(u"CloseUserSession", {}), "EQvException 0x00000000 Cannot create a soap call.");
  EXPECT_EQ(RunThrows(u"CreateUserSession", {}), "EQvException 0x00000000 Cannot create a soap call.");
  EXPECT_TRUE(http_.Calls().empty());
}

// The command dies in the clause that catches; under the address sanitizer a second death or none is an
// error.
TEST_F(SoapCall, RefusedEnvelopeSendsNothingAndKeepsItsWords) {
  NamedArguments map = ExecuteMap();
  map.insert({u"parameters", Variant::FromObject(nullptr)});
  EXPECT_EQ(RunThrows(u"Execute", map), "EQvException 0x00000000 Cannot create the xml document.");
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(SoapCall, NextCallOfAnObjectAfterAFailureWorks) {
  CSOAPCall call;
  http_.Fail(HttpStep::kRead, E_FAIL, u"cut off");
  http_.Answer(kClosed);
  http_.Answer(kClosed);
  const CQvUrl url(u"http://srv/a");
  EXPECT_EQ(Thrown([&] { call.Run(url, u"CloseUserSession", u"", CloseMap()); }),
            "EQvException 0x00000000 cut off");
  EXPECT_EQ(Thrown([&] { call.Run(url, u"CloseUserSession", u"", CloseMap()); }), "nothing");
}

TEST_F(SoapCall, NoReferenceIsLeftOnAnyWayOut) {
  http_.Answer(kClosed);
  Run(u"CloseUserSession", CloseMap());
  EXPECT_EQ(http_.LiveObjects(), 0);
  http_.Answer(kFaultFive);
  EXPECT_EQ(RunThrows(u"CloseUserSession", CloseMap()), "EQvException 0x80040005 No such table");
  EXPECT_EQ(http_.LiveObjects(), 0);
}

}  // namespace
}  // namespace qv
