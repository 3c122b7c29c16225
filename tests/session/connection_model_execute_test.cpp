// Running scripts under a session.
#include <gtest/gtest.h>

#include "qvscriptwells/create_objects.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "session/model_test.h"

namespace qv {
namespace {

constexpr char kNoSession[] = "EQvException 0x00000000 Session does not exist.";
constexpr char kRefused[] = "EQvException 0x00000000 Cannot create the xml document.";

class ModelExecute : public ModelTest {
 protected:
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }
  std::string ExecuteFileThrows() {
    return Thrown([this] { model_.ExecuteFile(u"/nowhere/script.xml", nullptr); });
  }
};

TEST_F(ModelExecute, NewModelHasNoSession) {
  EXPECT_EQ(ExecuteThrows(), kNoSession);
  EXPECT_EQ(ExecuteFileThrows(), kNoSession);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_EQ(model_.State(), SessionState::kNew);
}

TEST_F(ModelExecute, EmptyHandleIsNoSession) {
  model_.SetUSID(u"");
  EXPECT_EQ(ExecuteThrows(), kNoSession);
  EXPECT_EQ(ExecuteFileThrows(), kNoSession);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ModelExecute, ClosedSessionIsNoSession) {
  AdoptSession();
  http_.Answer(kSessionClosed);
  model_.CloseUserSession();
  EXPECT_EQ(ExecuteThrows(), kNoSession);
  EXPECT_EQ(http_.Bodies().size(), 1u);
}

TEST_F(ModelExecute, ScriptGoesOutWithSessionAndNilForm) {
  AdoptSession();
  http_.Answer(kScriptRan);
  const Variant value = model_.Execute(u"VBScript", u"a<b", nullptr);
  EXPECT_EQ(http_.Bodies(), Lines{RequestWith(kNoParameters)});
  EXPECT_EQ(http_.CallsNamed("SetHeader("),
            (Lines{"SetHeader(Host, srv:80)", "SetHeader(Content-Type, text/xml)",
                   "SetHeader(SOAPAction, http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute)"}));
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(Shown(value.Text()), "done");
}

TEST_F(ModelExecute, EmptyListIsTheArrayForm) {
  AdoptSession();
  http_.Answer(kScriptRan);
  model_.Execute(u"VBScript", u"a<b", CreateParameters().get());
  EXPECT_EQ(http_.Bodies(), Lines{RequestWith(ParameterArray("0", ""))});
}

TEST_F(ModelExecute, ParametersGoOutInOrder) {
  AdoptSession();
  http_.Answer(kScriptRan);
  const IParametersPtr list = CreateParameters();
  list->Add(u"a", Variant::FromInt(1), nullptr);
  list->Add(u"b", Variant::FromString(u"two"), nullptr);
  model_.Execute(u"VBScript", u"a<b", list.get());
  EXPECT_EQ(http_.Bodies(),
            Lines{RequestWith(ParameterArray(
                "2", ParameterElement("a", "xsd:int", "1") + ParameterElement("b", "xsd:string", "two")))});
}

TEST_F(ModelExecute, NullLanguageAndScriptAreSentEmpty) {
  AdoptSession();
  http_.Answer(kScriptRan);
  model_.Execute(WideString(), WideString(), nullptr);
  EXPECT_NE(http_.Bodies().back().find("Language=&quot;&quot;"), std::string::npos);
  EXPECT_NE(http_.Bodies().back().find("&lt;Code&gt;&lt;/Code&gt;"), std::string::npos);
}

TEST_F(ModelExecute, ProxyTravelsAsBareName) {
  model_.SetServer(u"http://srv:8080", u"proxy:3128");
  AdoptSession();
  http_.Answer(kScriptRan);
  model_.Execute(u"VBScript", u"1", nullptr);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 8080, , , proxy)"});
}

TEST_F(ModelExecute, SuccessMovesTheStateAndNullsTheCookie) {
  AdoptSession();
  http_.Answer(kScriptRan);
  model_.Execute(u"VBScript", u"1", nullptr);
  EXPECT_EQ(model_.State(), SessionState::kScriptRan);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_TRUE(model_.CookieHandle().IsNull());
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelExecute, FaultKeepsSessionStateAndCookie) {
  AdoptSession();
  http_.Answer(kFaultFive);
  EXPECT_EQ(ExecuteThrows(), "EQvException 0x80040005 server words");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
}

TEST_F(ModelExecute, TransferFailureKeepsSessionAndNextCallWorks) {
  AdoptSession();
  http_.Fail(HttpStep::kSend, E_FAIL, u"reset");
  http_.Answer(kScriptRan);
  EXPECT_EQ(ExecuteThrows(), "EQvException 0x00000000 reset");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_EQ(ExecuteThrows(), "nothing");
  EXPECT_EQ(model_.State(), SessionState::kScriptRan);
}

TEST_F(ModelExecute, NullValueIsNoValidResponse) {
  AdoptSession();
  http_.Answer(u"<soap:Envelope><soap:Body><ExecuteResponse/></soap:Body></soap:Envelope>");
  EXPECT_EQ(ExecuteThrows(), "EQvException 0x00000000 The respone that arrived is not valid");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
}

TEST_F(ModelExecute, EnvelopeWithoutAnswerIsAnEmptyValue) {
  AdoptSession();
  http_.Answer(kNoAnswerElement);
  EXPECT_EQ(model_.Execute(u"VBScript", u"1", nullptr).Tag(), VT_EMPTY);
  EXPECT_EQ(model_.State(), SessionState::kScriptRan);
}

TEST_F(ModelExecute, NeedsNoHostServices) {
  model_.SetClientServices(nullptr);
  AdoptSession();
  http_.Answer(kScriptRan);
  EXPECT_EQ(ExecuteThrows(), "nothing");
}

TEST_F(ModelExecute, ListIsReadOnlyAndItsReferencesAreGivenBack) {
  AdoptSession();
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->Put(u"a", Variant::FromInt(1), u"int");
  http_.Answer(kScriptRan);
  EXPECT_EQ(ExecuteThrows(list.get()), "nothing");
  EXPECT_EQ(log, (FakeLog{"Size", "Find(0)", "get_ParamValue", "get_ParamKey", "get_ParamTypeAsString"}));
  EXPECT_EQ(list->References(), 1u);
}

TEST_F(ModelExecute, ReferencesToTheListAreGivenBackAfterAFailure) {
  AdoptSession();
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->FailSize(E_FAIL);
  EXPECT_EQ(ExecuteThrows(list.get()), kRefused);
  EXPECT_EQ(list->References(), 1u);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelExecute, MissingScriptDocumentIsRefusedBeforeAnythingIsSent) {
  AdoptSession();
  EXPECT_EQ(ExecuteFileThrows(), kRefused);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
}

TEST_F(ModelExecute, CallAfterAMissingScriptDocumentWorks) {
  AdoptSession();
  ExecuteFileThrows();
  http_.Answer(kScriptRan);
  EXPECT_EQ(ExecuteThrows(), "nothing");
}

}  // namespace
}  // namespace qv
