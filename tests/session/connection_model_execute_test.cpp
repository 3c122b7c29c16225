// Running scripts and script documents under a session.
#include <string>

#include "fixtures/temporary_directory.h"
#include "qvscriptwells/create_objects.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "session/model_test.h"

namespace qv {
namespace {

constexpr char kSource[] =
    "<?xml version='1.0' encoding='ISO-8859-1'?>\n"
    "<Scriptwell Language='VBScript'>\n<Code>a&lt;b \xE9</Code></Scriptwell>\n";
constexpr char kOnTheWire[] =
    "&lt;Scriptwell Language=&quot;VBScript&quot;&gt;\\u000A&lt;Code&gt;a&amp;lt;b &#195;&#169;"
    "&lt;/Code&gt;&lt;/Scriptwell&gt;\\u000A\\u000A";

class ModelExecuteFile : public ModelTest {
 protected:
  Variant RunFile(const std::string& name, IParameters* parameters = nullptr) {
    return model_.ExecuteFile(FromUtf8(name), parameters);
  }
  std::string RunFileThrows(const std::string& name, IParameters* parameters = nullptr,
                            const std::u16string& answer = u"") {
    return Throws(answer, [&] { RunFile(name, parameters); });
  }

  TemporaryDirectory files_;
  const std::string file_ = files_.Write("script.xml", kSource);
  FakeLog log_;
  const FakeParametersPtr list_{new FakeParameters(&log_)};
};

// Whatever a script is run by: its text or its file.
class ModelExecute : public ModelExecuteFile, public testing::WithParamInterface<const char*> {
 protected:
  static bool IsFile() { return GetParam() == std::string("ExecuteFile"); }
  Variant Run(IParameters* parameters = nullptr) {
    return IsFile() ? RunFile(file_, parameters) : model_.Execute(u"VBScript", u"a<b", parameters);
  }
  std::string RunThrows(IParameters* parameters = nullptr, const std::u16string& answer = u"") {
    return Throws(answer, [&] { Run(parameters); });
  }
  static std::string Request(const std::string& parameters) {
    return IsFile() ? RequestOfFile(kOnTheWire, parameters) : RequestWith(parameters);
  }
};

TEST_P(ModelExecute, NewModelEmptyIdAndClosedSessionAreNoSession) {
  EXPECT_EQ(RunThrows(), kNoSession);
  EXPECT_EQ(model_.State(), SessionState::kNew);
  model_.SetUSID(u"");
  EXPECT_EQ(RunThrows(), kNoSession);
  EXPECT_TRUE(http_.Calls().empty());
  AdoptSession();
  EXPECT_EQ(CloseThrows(kSessionClosed), "nothing");
  EXPECT_EQ(RunThrows(), kNoSession);
  EXPECT_EQ(http_.Bodies().size(), 1U);
}

TEST_P(ModelExecute, ScriptIsSentWithSessionAndNilForm) {
  AdoptSession();
  http_.Answer(kScriptDone);
  const Variant value = Run();
  EXPECT_EQ(http_.Bodies(), Lines{Request(kNoParameters)});
  EXPECT_EQ(http_.CallsNamed("SetHeader("),
            (Lines{"SetHeader(Host, srv:80)", "SetHeader(Content-Type, text/xml)", ActionHeader("Execute")}));
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_EQ(Shown(value.Text()), "done");
  ExpectSession(SessionState::kScriptRan, "u1", "<null>");
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_P(ModelExecute, ParametersAreSentInOrder) {
  AdoptSession();
  http_.Answer(kScriptDone);
  http_.Answer(kScriptDone);
  const IParametersPtr list = CreateParameters();
  Run(list.get());
  list->Add(u"a", Variant::FromInt(1), nullptr);
  list->Add(u"b", Variant::FromString(u"two"), nullptr);
  Run(list.get());
  EXPECT_EQ(http_.Bodies(),
            (Lines{Request(ParameterArray("0", "")),
                   Request(ParameterArray("2", ParameterElement("a", "xsd:int", "1") +
                                                   ParameterElement("b", "xsd:string", "two")))}));
}

TEST_P(ModelExecute, ProxyIsABareNameAndNoHostServicesAreNeeded) {
  model_.SetServer(u"http://srv:8080", u"proxy:3128");
  model_.SetClientServices(nullptr);
  AdoptSession();
  EXPECT_EQ(RunThrows(nullptr, kScriptDone), "nothing");
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 8080, , , proxy)"});
}

TEST_P(ModelExecute, FailureKeepsTheSessionAndTheNextCallWorks) {
  AdoptSession();
  http_.Fail(HttpStep::kSend, E_FAIL, u"reset");
  EXPECT_EQ(RunThrows(), Refused("reset"));
  ExpectSession(SessionState::kOpen, "u1", "");
  EXPECT_EQ(RunThrows(nullptr, kFaultFive), kServerFault);
  ExpectSession(SessionState::kOpen, "u1", "");
  EXPECT_EQ(RunThrows(nullptr, ExecuteAnswer(u"")), kNotValid);
  ExpectSession(SessionState::kOpen, "u1", "");
  http_.Answer(kNoAnswerElement);
  EXPECT_EQ(Run().Tag(), VT_EMPTY);
  EXPECT_EQ(model_.State(), SessionState::kScriptRan);
}

TEST_P(ModelExecute, ListIsReadOnlyAndItsReferencesAreGivenBack) {
  AdoptSession();
  list_->Put(u"a", Variant::FromInt(1), u"int");
  EXPECT_EQ(RunThrows(list_.get(), kScriptDone), "nothing");
  EXPECT_EQ(log_, (FakeLog{"Size", "Find(0)", "get_ParamValue", "get_ParamKey", "get_ParamTypeAsString"}));
  EXPECT_EQ(list_->References(), 1U);
}

TEST_P(ModelExecute, ReferencesToTheListAreGivenBackAfterAFailure) {
  AdoptSession();
  list_->FailSize(E_FAIL);
  EXPECT_EQ(RunThrows(list_.get()), kNoDocument);
  EXPECT_EQ(list_->References(), 1U);
  EXPECT_TRUE(http_.Calls().empty());
  ExpectSession(SessionState::kOpen, "u1", "");
}

INSTANTIATE_TEST_SUITE_P(By, ModelExecute, testing::Values("Execute", "ExecuteFile"),
                         [](const auto& way) { return std::string(way.param); });

TEST_F(ModelExecuteFile, NullLanguageAndScriptAreSentEmpty) {
  AdoptSession();
  http_.Answer(kScriptDone);
  model_.Execute(WideString(), WideString(), nullptr);
  EXPECT_NE(http_.Bodies().back().find("Language=&quot;&quot;"), std::string::npos);
  EXPECT_NE(http_.Bodies().back().find("&lt;Code&gt;&lt;/Code&gt;"), std::string::npos);
}

TEST_F(ModelExecuteFile, SessionIsLookedAtBeforeTheFile) {
  EXPECT_EQ(RunFileThrows("/nowhere/script.xml"), kNoSession);
  EXPECT_EQ(RunFileThrows(""), kNoSession);
}

TEST_F(ModelExecuteFile, BrokenFileSendsNothingAndChangesNothing) {
  AdoptSession();
  const struct {
    std::string name;
    const char* thrown;
  } rows[] = {{files_.Write("broken.xml", "<r><a></r>"), kNoDocument},
              {"/nowhere/script.xml", kNoDocument},
              {files_.Path(), kNoDocument},
              {"", kNoFileName}};
  for (const auto& row : rows) {
    EXPECT_EQ(RunFileThrows(row.name), row.thrown) << row.name;
    ExpectSession(SessionState::kOpen, "u1", "");
  }
  EXPECT_EQ(Thrown([this] { model_.ExecuteFile(WideString(), nullptr); }), kNoFileName);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ModelExecuteFile, CallAfterABrokenFileWorks) {
  AdoptSession();
  EXPECT_EQ(RunFileThrows(files_.Write("broken.xml", "<r>")), kNoDocument);
  EXPECT_EQ(RunFileThrows(file_, nullptr, kScriptDone), "nothing");
  EXPECT_EQ(ExecuteThrows(nullptr, kScriptDone), "nothing");
  EXPECT_EQ(http_.Bodies(), (Lines{RequestOfFile(kOnTheWire, kNoParameters), RequestWith(kNoParameters)}));
}

TEST_F(ModelExecuteFile, FileIsReadAgainForEachCall) {
  AdoptSession();
  for (const std::string name : {"one", "two"}) {
    http_.Answer(kScriptDone);
    RunFile(files_.Write("script.xml", "<" + name + "/>"));
    EXPECT_EQ(http_.Bodies().back(), RequestOfFile("&lt;" + name + "/&gt;\\u000A\\u000A", kNoParameters));
  }
}

// The document is written before the parameters are looked at.
TEST_F(ModelExecuteFile, BrokenFileLeavesTheListAlone) {
  AdoptSession();
  list_->Put(u"a", Variant::FromInt(1), u"int");
  EXPECT_EQ(RunFileThrows("/nowhere/script.xml", list_.get()), kNoDocument);
  EXPECT_EQ(log_, FakeLog{});
  EXPECT_EQ(list_->References(), 1U);
}

}  // namespace
}  // namespace qv
