// Running script documents under a session.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "qvscriptwells/create_objects.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "script/script_files.h"
#include "session/model_test.h"

namespace qv {
namespace {

constexpr char kNoSession[] = "EQvException 0x00000000 Session does not exist.";
constexpr char kRefused[] = "EQvException 0x00000000 Cannot create the xml document.";
constexpr char kSource[] =
    "<?xml version='1.0' encoding='ISO-8859-1'?>\n"
    "<Scriptwell Language='VBScript'>\n<Code>a&lt;b \xE9</Code></Scriptwell>\n";
constexpr char kOnTheWire[] =
    "&lt;Scriptwell Language=&quot;VBScript&quot;&gt;\\u000A&lt;Code&gt;a&amp;lt;b &#195;&#169;"
    "&lt;/Code&gt;&lt;/Scriptwell&gt;\\u000A\\u000A";

class ModelExecuteFile : public ModelTest {
 protected:
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }

  Variant Run(const std::string& name, IParameters* parameters = nullptr) {
    return model_.ExecuteFile(FromUtf8(name), parameters);
  }
  std::string RunThrows(const std::string& name, IParameters* parameters = nullptr) {
    return Thrown([&] { Run(name, parameters); });
  }

  ScriptFiles files_;
  const std::string file_ = files_.Write("script.xml", kSource);
};

TEST_F(ModelExecuteFile, DocumentGoesOutWithSessionAndNilForm) {
  AdoptSession();
  http_.Answer(kScriptRan);
  const Variant value = Run(file_);
  EXPECT_EQ(http_.Bodies(), Lines{RequestOfFile(kOnTheWire, kNoParameters)});
  EXPECT_EQ(http_.CallsNamed("SetHeader("),
            (Lines{"SetHeader(Host, srv:80)", "SetHeader(Content-Type, text/xml)",
                   "SetHeader(SOAPAction, http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute)"}));
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(Shown(value.Text()), "done");
}

TEST_F(ModelExecuteFile, EmptyListIsTheArrayForm) {
  AdoptSession();
  http_.Answer(kScriptRan);
  Run(file_, CreateParameters().get());
  EXPECT_EQ(http_.Bodies(), Lines{RequestOfFile(kOnTheWire, ParameterArray("0", ""))});
}

TEST_F(ModelExecuteFile, ParametersGoOutInOrder) {
  AdoptSession();
  http_.Answer(kScriptRan);
  const IParametersPtr list = CreateParameters();
  list->Add(u"a", Variant::FromInt(1), nullptr);
  list->Add(u"b", Variant::FromString(u"two"), nullptr);
  Run(file_, list.get());
  EXPECT_EQ(
      http_.Bodies(),
      Lines{RequestOfFile(kOnTheWire, ParameterArray("2", ParameterElement("a", "xsd:int", "1") +
                                                              ParameterElement("b", "xsd:string", "two")))});
}

TEST_F(ModelExecuteFile, WithoutASessionNothingIsSent) {
  EXPECT_EQ(RunThrows(file_), kNoSession);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_EQ(model_.State(), SessionState::kNew);
  model_.SetUSID(u"");
  EXPECT_EQ(RunThrows(file_), kNoSession);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ModelExecuteFile, SessionIsLookedAtBeforeTheFile) {
  EXPECT_EQ(RunThrows("/nowhere/script.xml"), kNoSession);
  EXPECT_EQ(RunThrows(""), kNoSession);
}

TEST_F(ModelExecuteFile, ClosedSessionIsNoSession) {
  AdoptSession();
  http_.Answer(kSessionClosed);
  model_.CloseUserSession();
  EXPECT_EQ(RunThrows(file_), kNoSession);
  EXPECT_EQ(http_.Bodies().size(), 1u);
}

TEST_F(ModelExecuteFile, SuccessMovesTheStateAndNullsTheCookie) {
  AdoptSession();
  http_.Answer(kScriptRan);
  Run(file_);
  EXPECT_EQ(model_.State(), SessionState::kScriptRan);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_TRUE(model_.CookieHandle().IsNull());
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelExecuteFile, BrokenFileSendsNothingAndChangesNothing) {
  AdoptSession();
  const std::string broken = files_.Write("broken.xml", "<r><a></r>");
  for (const std::string& name : {broken, std::string("/nowhere/script.xml"), files_.Directory().string()}) {
    EXPECT_EQ(RunThrows(name), kRefused) << name;
    EXPECT_EQ(model_.State(), SessionState::kOpen);
    EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
    EXPECT_EQ(Shown(model_.CookieHandle()), "");
  }
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ModelExecuteFile, CallAfterABrokenFileWorks) {
  AdoptSession();
  EXPECT_EQ(RunThrows(files_.Write("broken.xml", "<r>")), kRefused);
  http_.Answer(kScriptRan);
  EXPECT_EQ(RunThrows(file_), "nothing");
  http_.Answer(kScriptRan);
  EXPECT_EQ(ExecuteThrows(), "nothing");
  EXPECT_EQ(http_.Bodies(), (Lines{RequestOfFile(kOnTheWire, kNoParameters), RequestWith(kNoParameters)}));
}

TEST_F(ModelExecuteFile, NameThatIsNoneHasTheWordsOfTheNameRules) {
  AdoptSession();
  EXPECT_EQ(Thrown([this] { model_.ExecuteFile(WideString(), nullptr); }),
            "EQvException 0x00000000 IsFileNameURL - File Name is missing.");
  EXPECT_EQ(RunThrows(""), "EQvException 0x00000000 IsFileNameURL - File Name is missing.");
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelExecuteFile, FileIsReadAfreshForEachCall) {
  AdoptSession();
  http_.Answer(kScriptRan);
  http_.Answer(kScriptRan);
  Run(files_.Write("script.xml", "<one/>"));
  Run(files_.Write("script.xml", "<two/>"));
  EXPECT_EQ(http_.Bodies(), (Lines{RequestOfFile("&lt;one/&gt;\\u000A\\u000A", kNoParameters),
                                   RequestOfFile("&lt;two/&gt;\\u000A\\u000A", kNoParameters)}));
}

TEST_F(ModelExecuteFile, FaultKeepsSessionStateAndCookie) {
  AdoptSession();
  http_.Answer(kFaultFive);
  EXPECT_EQ(RunThrows(file_), "EQvException 0x80040005 server words");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
}

TEST_F(ModelExecuteFile, TransferFailureKeepsSessionAndNextCallWorks) {
  AdoptSession();
  http_.Fail(HttpStep::kSend, E_FAIL, u"reset");
  http_.Answer(kScriptRan);
  EXPECT_EQ(RunThrows(file_), "EQvException 0x00000000 reset");
  EXPECT_EQ(RunThrows(file_), "nothing");
}

TEST_F(ModelExecuteFile, ProxyTravelsAsBareName) {
  model_.SetServer(u"http://srv:8080", u"proxy:3128");
  AdoptSession();
  http_.Answer(kScriptRan);
  Run(file_);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 8080, , , proxy)"});
}

// The document is written before the parameters are looked at.
TEST_F(ModelExecuteFile, BrokenFileLeavesTheListAlone) {
  AdoptSession();
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->Put(u"a", Variant::FromInt(1), u"int");
  EXPECT_EQ(RunThrows("/nowhere/script.xml", list.get()), kRefused);
  EXPECT_EQ(log, FakeLog{});
  EXPECT_EQ(list->References(), 1u);
}

TEST_F(ModelExecuteFile, ReferencesToTheListAreGivenBack) {
  AdoptSession();
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->Put(u"a", Variant::FromInt(1), u"int");
  http_.Answer(kScriptRan);
  EXPECT_EQ(RunThrows(file_, list.get()), "nothing");
  EXPECT_EQ(log, (FakeLog{"Size", "Find(0)", "get_ParamValue", "get_ParamKey", "get_ParamTypeAsString"}));
  EXPECT_EQ(list->References(), 1u);
}

}  // namespace
}  // namespace qv
