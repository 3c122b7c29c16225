// The ConnectionModel object as a host meets it: result codes and error records.
#include <gtest/gtest.h>

#include "fixtures/fake_host.h"
#include "fixtures/fake_http.h"
#include "fixtures/soap_texts.h"
#include "fixtures/thrown.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/register_formaters.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"

namespace qv {
namespace {

constexpr char kNoSession[] = "Session does not exist.";
constexpr char kNoUrl[] = "Cannot parse url, expecting 'http://' after protocol name.";

class ConnectionModelObject : public testing::Test {
 protected:
  ConnectionModelObject() {
    FillFormaters();
    EXPECT_EQ(raw_->SetServer(u"http://srv", u""), S_OK);
    EXPECT_EQ(raw_->SetClientServices(host_->Unknown()), S_OK);
    LeaveStaleRecord();
  }
  void TearDown() override {
    raw_.reset();
    model_.reset();
    host_.reset();
    EXPECT_EQ(FakeHost::Live(), 0);
    EXPECT_EQ(http_.LiveObjects(), 0);
    ClearErrorInfo();
  }

  HRESULT Open() { return model_->CreateUserSession(u"Username=joe;"); }
  HRESULT Execute(IParameters* parameters = nullptr) {
    return model_->Execute(u"VBScript", u"a<b", parameters, &result_);
  }
  // In an adopted session, with this answer.
  HRESULT ExecuteIn(std::u16string_view answer, IParameters* parameters = nullptr) {
    EXPECT_EQ(model_->SetUSID(u"u1"), S_OK);
    http_.Answer(answer);
    LeaveStaleRecord();
    return Execute(parameters);
  }
  // Success leaves no record, not even the stale one.
  static void ExpectSuccess(HRESULT code) {
    EXPECT_EQ(code, S_OK);
    EXPECT_EQ(TakenWords(), "no record");
    LeaveStaleRecord();
  }
  static void ExpectFailure(HRESULT code, std::uint32_t expected, const std::string& message) {
    EXPECT_EQ(static_cast<std::uint32_t>(code), expected);
    EXPECT_EQ(TakenWords(), message);
  }

  FakeHttp http_;
  FakeHostPtr host_{new FakeHost};
  IConnectionModelPtr model_ = CreateConnectionModel();
  IConnectionModelRawPtr raw_ = As<IConnectionModelRaw>(model_);
  Variant result_;
};

TEST_F(ConnectionModelObject, SessionOpensRunsAScriptAndCloses) {
  for (const std::u16string_view answer : {kSessionOpened, kScriptDone, kSessionClosed}) http_.Answer(answer);
  ExpectSuccess(Open());
  ExpectSuccess(Execute());
  ExpectSuccess(model_->CloseUserSession());
  EXPECT_EQ(Shown(result_.Text()), "done");
  EXPECT_EQ(http_.Bodies()[1], RequestWith(kNoParameters));
  EXPECT_EQ(host_->Calls(), (std::vector<std::string>{"SetUsid(u1)", "SetUserName(joe)",
                                                      "SetDatabaseIds(<null>, <null>)", "ClearSession()"}));
}

TEST_F(ConnectionModelObject, EveryMemberClearsTheStaleRecord) {
  ExpectSuccess(model_->CloseUserSession());
  ExpectSuccess(model_->SetUSID(u"u1"));
  ExpectSuccess(raw_->SetServer(u"http://srv", u""));
  ExpectSuccess(raw_->SetClientServices(nullptr));
}

TEST_F(ConnectionModelObject, ParametersTravel) {
  const IParametersPtr list = CreateParameters();
  list->Add(u"a", Variant::FromInt(1), nullptr);
  ExpectSuccess(ExecuteIn(kScriptDone, list.get()));
  EXPECT_EQ(http_.Bodies().back(), RequestWith(ParameterArray("1", ParameterElement("a", "xsd:int", "1"))));
}

TEST_F(ConnectionModelObject, MissingSessionIsAnException) {
  ExpectFailure(Execute(), 0x80020009, kNoSession);
  ExpectFailure(model_->ExecuteFile(u"f", nullptr, &result_), 0x80020009, kNoSession);
}

TEST_F(ConnectionModelObject, MissingScriptDocumentIsAnException) {
  model_->SetUSID(u"u1");
  ExpectFailure(model_->ExecuteFile(u"/none", nullptr, &result_), 0x80020009,
                "Cannot create the xml document.");
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ConnectionModelObject, FaultBringsTheServersNumberAndMessage) {
  constexpr char16_t kFault[] = u"<soap:Envelope><soap:Body><soap:Fault/></soap:Body></soap:Envelope>";
  constexpr char16_t kEmptyMessage[] =
      u"<soap:Envelope><soap:Body><soap:Fault><faultstring/></soap:Fault></soap:Body></soap:Envelope>";
  ExpectFailure(ExecuteIn(kFaultFive), 0x80040005, "server words");
  ExpectFailure(ExecuteIn(kFault), 0x80040000, "Unknown Error");
  ExpectFailure(ExecuteIn(kEmptyMessage), 0x80020009, "");
}

TEST_F(ConnectionModelObject, UnreachableServerIsACallThatCannotBeCreated) {
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  ExpectFailure(Open(), 0x80020009, "Cannot create a soap call.");
}

TEST_F(ConnectionModelObject, BrokenTransferBringsTheComponentsMessage) {
  http_.Fail(HttpStep::kRead, E_FAIL, u"cut off");
  http_.Answer(kSessionOpened);
  ExpectFailure(Open(), 0x80020009, "cut off");
}

TEST_F(ConnectionModelObject, MissingServicesAreANullReference) {
  raw_->SetClientServices(nullptr);
  http_.Answer(kSessionOpened);
  http_.Answer(kSessionClosed);
  ExpectFailure(Open(), 0x80004003, "Unknown Error");
  ExpectFailure(model_->CloseUserSession(), 0x80004003, "Unknown Error");
}

TEST_F(ConnectionModelObject, FailingHostBringsItsCodeAndMessage) {
  for (const WideString& message : {WideString(u"host words"), WideString()}) {
    host_->Fail("SetUserName", E_INVALIDARG, message);
    http_.Answer(kSessionOpened);
    ExpectFailure(Open(), 0x80070057, message.IsNull() ? "Unknown Error" : "host words");
  }
}

TEST_F(ConnectionModelObject, BadServerNameIsAnException) {
  ExpectFailure(raw_->SetServer(u"srv", u""), 0x80020009, kNoUrl);
}

TEST_F(ConnectionModelObject, ServicesWhoseQueryFailsBringItsCode) {
  const FakeHostPtr broken(new FakeHost);
  broken->FailQuery(E_FAIL);
  ExpectFailure(raw_->SetClientServices(broken->Unknown()), 0x80004005, "Unknown Error");
}

TEST_F(ConnectionModelObject, CallerOfTheFirstInterfaceGetsTheMessage) {
  EXPECT_EQ(Thrown([this] { ThrowIfFailed(Execute(), model_.get(), IConnectionModel::kIid); }),
            "_com_error 0x80020009 Session does not exist.");
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(ConnectionModelObject, CallerOfTheRawInterfaceFindsTheRecordWaiting) {
  EXPECT_EQ(
      Thrown([this] { ThrowIfFailed(raw_->SetServer(u"srv", u""), raw_.get(), IConnectionModelRaw::kIid); }),
      "_com_error 0x80020009 <null>");
  EXPECT_EQ(TakenWords(), kNoUrl);
}

TEST_F(ConnectionModelObject, NullOutputParameterIsRefusedBeforeAnythingIsSent) {
  model_->SetUSID(u"u1");
  EXPECT_EQ(model_->Execute(u"VBScript", u"1", nullptr, nullptr), E_POINTER);
  EXPECT_EQ(model_->ExecuteFile(u"f", nullptr, nullptr), E_POINTER);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ConnectionModelObject, ResultIsReplacedOnSuccessOnly) {
  result_ = Variant::FromString(u"before");
  EXPECT_EQ(Execute(), DISP_E_EXCEPTION);
  EXPECT_EQ(Shown(result_.Text()), "before");
  LeaveStaleRecord();
  ExpectSuccess(ExecuteIn(kScriptDone));
  EXPECT_EQ(Shown(result_.Text()), "done");
}

TEST_F(ConnectionModelObject, LastReleaseReleasesTheServicesAndSendsNothing) {
  model_->SetUSID(u"u1");
  raw_.reset();
  model_.reset();
  EXPECT_EQ(host_->References(), 1U);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ConnectionModelObject, ModelOutlivesACallInWhichItsHostReleasesIt) {
  http_.Answer(kSessionOpened);
  raw_.reset();
  IConnectionModel* called = model_.get();
  host_->OnSinkCall([this] { model_.reset(); });
  EXPECT_EQ(called->CreateUserSession(u"Username=joe;"), S_OK);
  EXPECT_EQ(host_->Calls().size(), 3U);
  EXPECT_EQ(host_->References(), 1U);
}

// The model goes with the failed call, and its services with it: they call an operation that clears the
// record.
TEST_F(ConnectionModelObject, RecordIsPostedAfterTheCallReleasedItsObjects) {
  http_.Answer(kSessionOpened);
  raw_.reset();
  IConnectionModel* called = model_.get();
  bool hostIsGone = false;
  host_->Fail("SetUserName", E_INVALIDARG, u"host words");
  host_->OnLastRelease([&] {
    WideString text;
    EXPECT_EQ(CreateUrl()->ToString(&text), S_OK);
    hostIsGone = true;
  });
  host_->OnSinkCall([this] {
    model_.reset();
    host_.reset();
  });
  EXPECT_EQ(called->CreateUserSession(u"Username=joe;"), E_INVALIDARG);
  EXPECT_TRUE(hostIsGone);
  EXPECT_EQ(TakenWords(), "host words");
}

TEST_F(ConnectionModelObject, ServicesOutliveACallInWhichTheyAreReplaced) {
  http_.Answer(kSessionOpened);
  FakeHost* services = host_.get();
  std::vector<std::string> calls;
  services->OnSinkCall([&] {
    calls = services->Calls();
    raw_->SetClientServices(nullptr);
    host_.reset();
  });
  EXPECT_EQ(Open(), S_OK);
  EXPECT_EQ(calls.size(), 3U);
}

TEST_F(ConnectionModelObject, ReferencesToAListAreReturned) {
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->Put(u"a", Variant::FromInt(1), u"int");
  model_->SetUSID(u"u1");
  http_.Answer(kScriptDone);
  ExpectSuccess(Execute(list.get()));
  http_.Fail(HttpStep::kSend, E_FAIL, u"reset", 2);
  EXPECT_EQ(Execute(list.get()), DISP_E_EXCEPTION);
  EXPECT_EQ(list->References(), 1U);
}

}  // namespace
}  // namespace qv
