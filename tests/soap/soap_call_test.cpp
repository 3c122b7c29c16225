// A call: which command its action gets, what it takes from the map, and how it fails.
#include "soap/soap_call.h"

#include <gtest/gtest.h>

#include <memory>

#include "fixtures/fake_http.h"
#include "fixtures/known_failures.h"
#include "fixtures/shown_text.h"
#include "fixtures/soap_texts.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "recordlist/register_formaters.h"
#include "script/execute_command.h"

namespace qv {
namespace {

using Lines = std::vector<std::string>;

class SoapCall : public testing::Test {
 protected:
  void SetUp() override { FillFormaters(); }
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }

  static std::unique_ptr<CQvCommand> CommandFor(const WideString& action) {
    CSOAPCall call;
    call.SetAction(action);
    return std::unique_ptr<CQvCommand>(call.CreateCommand());
  }
  static CSOAPResponse Run(const WideString& action, const NamedArguments& map) {
    return CSOAPCall().Run(CQvUrl(u"http://srv/a"), action, u"ignored", map);
  }
  static std::string RunThrows(const WideString& action, const NamedArguments& map) {
    return Thrown([&] { Run(action, map); });
  }
  std::string CloseThrows() { return RunThrows(u"CloseUserSession", close_); }

  const NamedArguments close_{{u"ContextHandle", Text(u"u1")}};
  const NamedArguments execute_{
      {u"ContextHandle", Text(u"u1")}, {u"ScriptLanguage", Text(u"JavaScript")}, {u"Script", Text(u"1")}};
  FakeHttp http_;
};

TEST_F(SoapCall, EachActionGetsItsCommand) {
  EXPECT_NE(dynamic_cast<CCreateSessionCommand*>(CommandFor(u"CreateUserSession").get()), nullptr);
  EXPECT_NE(dynamic_cast<CReleaseSessionCommand*>(CommandFor(u"CloseUserSession").get()), nullptr);
  EXPECT_NE(dynamic_cast<CExecuteCommand*>(CommandFor(u"Execute").get()), nullptr);
}

TEST_F(SoapCall, OtherActionsGetNoCommand) {
  for (const std::u16string_view action :
       {std::u16string_view(u"DownloadFile"), std::u16string_view(u"ExecuteFile"),
        std::u16string_view(u"execute"), std::u16string_view(u"Execute "),
        std::u16string_view(u"CreateUserSessio"), std::u16string_view(u"CLOSEUSERSESSION"),
        std::u16string_view(), std::u16string_view(u"Execute\0x", 9)})
    EXPECT_EQ(CommandFor(action), nullptr) << Shown(action);
  EXPECT_EQ(CSOAPCall().CreateCommand(), nullptr);
}

TEST_F(SoapCall, ProxyAndCookieAreTheTextsUnderTheirKeys) {
  EXPECT_EQ(Shown(CSOAPCall::GetProxy({{u"Proxy", Text(u"p")}})), "p");
  EXPECT_EQ(Shown(CSOAPCall::GetProxy({})), "");
  EXPECT_TRUE(CSOAPCall::GetProxy({{u"Proxy", Int(7)}}).IsEmpty());
  EXPECT_EQ(Shown(CSOAPCall::GetCookieHandle({{u"CookieHandle", Text(u"c")}})), "c");
  EXPECT_EQ(Shown(CSOAPCall::GetCookieHandle({})), "");
  EXPECT_EQ(Shown(CSOAPCall::GetCookieHandle({{u"CookieHandle", NullText()}})), "<null>");
}

TEST_F(SoapCall, ProxyPortIsLowSixteenBits) {
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Int(8080)}}), 8080);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Int(0x12345)}}), 0x2345);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Int(-1)}}), 65535);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", I8(0x100001F90)}}), 8080);
  EXPECT_EQ(CSOAPCall::GetProxyPort({}), 0);
  EXPECT_EQ(CSOAPCall::GetProxyPort({{u"ProxyPort", Variant()}}), 0);
}

TEST_F(SoapCall, EnvelopeOfTheActionIsSentOnceWithoutItsNull) {
  http_.Answer(kSessionClosed);
  const CSOAPResponse response = Run(u"CloseUserSession", close_);
  EXPECT_EQ(http_.Bodies(), Lines{CloseSessionRequest("u1")});
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, <null>, <null>, )"});
  EXPECT_EQ(http_.CallsNamed("SetHeader(").size(), 3U);
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
  EXPECT_TRUE(response.Cookie().IsNull());
}

TEST_F(SoapCall, ProxyIsSentAsABareNameAndTheCookieAsAHeader) {
  http_.Answer(kSessionClosed);
  NamedArguments map = close_;
  map.insert({u"Proxy", Text(u"proxy")});
  map.insert({u"ProxyPort", Int(8080)});
  map.insert({u"CookieHandle", Text(u"k=v")});
  Run(u"CloseUserSession", map);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, <null>, <null>, proxy)"});
  EXPECT_EQ(http_.CallsNamed("SetHeader(Cookie"), Lines{"SetHeader(Cookie, k=v)"});
}

TEST_F(SoapCall, ValueOfTheAnswerIsReturned) {
  http_.Answer(ExecuteAnswer(ValueElement(u"xsd:int", u"42")));
  const Variant value = Run(u"Execute", execute_).Value();
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 42);
}

TEST_F(SoapCall, AnswerWithoutAValueIsNoValidResponse) {
  for (const char16_t* value : {u"<r xsi:null=\"0\">42</r>", u""}) {
    http_.Answer(ExecuteAnswer(value));
    EXPECT_EQ(RunThrows(u"Execute", execute_), kNotValid) << Shown(value);
  }
}

TEST_F(SoapCall, FailureOfTheAnswerKeepsItsMessage) {
  http_.Answer(kFaultFive);
  EXPECT_EQ(CloseThrows(), "EQvException 0x80040005 server words");
  http_.Answer(u"<soap:Envelope>\n<a>\n</b></soap:Envelope>");
  EXPECT_EQ(CloseThrows(),
            Refused("Error at file application/xml, line 3, char 3  Message: application/xml"));
  http_.Fail(HttpStep::kSend, E_FAIL, u"connection reset", 3);
  EXPECT_EQ(CloseThrows(), Refused("connection reset"));
}

TEST_F(SoapCall, CallThatCannotBeMadeHasOneMessage) {
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route to host");
  EXPECT_EQ(CloseThrows(), kNoSoapCall);
  http_.GiveNullRequest();
  EXPECT_EQ(CloseThrows(), kNoSoapCall);
  FakeHttp http;
  EXPECT_EQ(RunThrows(u"CloseUserSession", {}), kNoSoapCall);
  EXPECT_EQ(RunThrows(u"CreateUserSession", {}), kNoSoapCall);
  EXPECT_EQ(RunThrows(u"DownloadFile", close_), kNoSoapCall);
  EXPECT_TRUE(http.Calls().empty());
}

// The command is destroyed in the clause that catches; a second destruction or none is an error of the
// address sanitizer.
TEST_F(SoapCall, RefusedEnvelopeSendsNothingAndKeepsItsMessage) {
  NamedArguments map = execute_;
  map.insert({u"parameters", Variant::FromObject(nullptr)});
  EXPECT_EQ(RunThrows(u"Execute", map), kNoDocument);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(SoapCall, NextCallOfAnObjectAfterAFailureWorks) {
  CSOAPCall call;
  http_.Fail(HttpStep::kRead, E_FAIL, u"cut off");
  http_.Answer(kSessionClosed);
  http_.Answer(kSessionClosed);
  for (const std::string& thrown : {Refused("cut off"), std::string("nothing")}) {
    EXPECT_EQ(Thrown([&] { call.Run(CQvUrl(u"http://srv/a"), u"CloseUserSession", u"", close_); }), thrown);
    EXPECT_EQ(http_.LiveObjects(), 0);
  }
}

}  // namespace
}  // namespace qv
