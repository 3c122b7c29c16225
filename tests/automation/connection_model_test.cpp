// The ConnectionModel object as a host meets it: result codes and error records.
#include <gtest/gtest.h>

#include "automation/waiting_record.h"
#include "fixtures/fake_host.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "session/session_answers.h"

namespace qv {
namespace {

class ConnectionModelObject : public testing::Test {
 protected:
  ConnectionModelObject() : host_(new FakeHost), model_(CreateConnectionModel()) {
    EnsureFormaters();
    raw_ = As<IConnectionModelRaw>(model_);
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

  HRESULT Execute(IParameters* parameters = nullptr) {
    return model_->Execute(u"VBScript", u"a<b", parameters, &result_);
  }
  // Success leaves no record, not even the stale one.
  void ExpectSuccess(HRESULT code) {
    EXPECT_EQ(code, S_OK);
    EXPECT_EQ(TakenWords(), "no record");
  }
  void ExpectFailure(HRESULT code, std::uint32_t expected, const std::string& words) {
    EXPECT_EQ(static_cast<std::uint32_t>(code), expected);
    EXPECT_EQ(TakenWords(), words);
  }

  FakeHttp http_;
  FakeHostPtr host_;
  IConnectionModelPtr model_;
  IConnectionModelRawPtr raw_;
  Variant result_;
};

TEST_F(ConnectionModelObject, SessionOpensRunsAScriptAndCloses) {
  http_.Answer(kSessionOpened);
  http_.Answer(kScriptRan);
  http_.Answer(kSessionClosed);
  ExpectSuccess(model_->CreateUserSession(u"Username=joe;"));
  LeaveStaleRecord();
  ExpectSuccess(Execute());
  LeaveStaleRecord();
  ExpectSuccess(model_->CloseUserSession());
  EXPECT_EQ(Shown(result_.Text()), "done");
  EXPECT_EQ(http_.Bodies()[1], RequestWith(kNoParameters));
  EXPECT_EQ(host_->Calls(), (std::vector<std::string>{"SetUsid(u1)", "SetUserName(joe)",
                                                      "SetDatabaseIds(<null>, <null>)", "ClearSession()"}));
}

TEST_F(ConnectionModelObject, EveryMemberClearsTheStaleRecord) {
  ExpectSuccess(model_->CloseUserSession());
  LeaveStaleRecord();
  ExpectSuccess(model_->SetUSID(u"u1"));
  LeaveStaleRecord();
  ExpectSuccess(raw_->SetServer(u"http://srv", u""));
  LeaveStaleRecord();
  ExpectSuccess(raw_->SetClientServices(nullptr));
}

TEST_F(ConnectionModelObject, ParametersTravel) {
  model_->SetUSID(u"u1");
  http_.Answer(kScriptRan);
  const IParametersPtr list = CreateParameters();
  list->Add(u"a", Variant::FromInt(1), nullptr);
  ExpectSuccess(Execute(list.get()));
  EXPECT_EQ(http_.Bodies().back(), RequestWith(ParameterArray("1", ParameterElement("a", "xsd:int", "1"))));
}

TEST_F(ConnectionModelObject, NoSessionIsAnExceptionWithWords) {
  ExpectFailure(Execute(), 0x80020009, "Session does not exist.");
  ExpectFailure(model_->ExecuteFile(u"f", nullptr, &result_), 0x80020009, "Session does not exist.");
}

TEST_F(ConnectionModelObject, MissingScriptDocumentIsAnExceptionWithWords) {
  model_->SetUSID(u"u1");
  ExpectFailure(model_->ExecuteFile(u"/none", nullptr, &result_), 0x80020009,
                "Cannot create the xml document.");
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ConnectionModelObject, FaultBringsTheServersNumberAndWords) {
  model_->SetUSID(u"u1");
  http_.Answer(kFaultFive);
  ExpectFailure(Execute(), 0x80040005, "server words");
}

TEST_F(ConnectionModelObject, FaultWithoutWordsIsAnUnknownError) {
  model_->SetUSID(u"u1");
  http_.Answer(u"<soap:Envelope><soap:Body><soap:Fault/></soap:Body></soap:Envelope>");
  ExpectFailure(Execute(), 0x80040000, "Unknown Error");
}

TEST_F(ConnectionModelObject, FaultWithEmptyWordsKeepsThemEmpty) {
  model_->SetUSID(u"u1");
  http_.Answer(
      u"<soap:Envelope><soap:Body><soap:Fault><faultstring/></soap:Fault></soap:Body></soap:Envelope>");
  ExpectFailure(Execute(), 0x80020009, "");
}

TEST_F(ConnectionModelObject, UnreachableServerIsACallThatCannotBeCreated) {
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  ExpectFailure(model_->CreateUserSession(u""), 0x80020009, "Cannot create a soap call.");
}

TEST_F(ConnectionModelObject, BrokenTransferBringsTheComponentsWords) {
  http_.Fail(HttpStep::kRead, E_FAIL, u"cut off");
  http_.Answer(kSessionOpened);
  ExpectFailure(model_->CreateUserSession(u""), 0x80020009, "cut off");
}

TEST_F(ConnectionModelObject, MissingServicesAreANullReferenceWithoutWords) {
  raw_->SetClientServices(nullptr);
  http_.Answer(kSessionOpened);
  http_.Answer(kSessionClosed);
  ExpectFailure(model_->CreateUserSession(u""), 0x80004003, "Unknown Error");
  ExpectFailure(model_->CloseUserSession(), 0x80004003, "Unknown Error");
}

TEST_F(ConnectionModelObject, FailingHostBringsItsCodeAndWords) {
  host_->Fail("SetUserName", E_INVALIDARG, u"host words");
  http_.Answer(kSessionOpened);
  ExpectFailure(model_->CreateUserSession(u""), 0x80070057, "host words");
}

TEST_F(ConnectionModelObject, FailingHostWithoutWordsIsAnUnknownError) {
  host_->Fail("SetUserName", E_INVALIDARG);
  http_.Answer(kSessionOpened);
  ExpectFailure(model_->CreateUserSession(u""), 0x80070057, "Unknown Error");
}

TEST_F(ConnectionModelObject, BadServerNameIsAnExceptionWithWords) {
  ExpectFailure(raw_->SetServer(u"srv", u""), 0x80020009,
                "Cannot parse url, expecting 'http://' after protocol name.");
}

TEST_F(ConnectionModelObject, ServicesWhoseQueryFailsBringItsCode) {
  const FakeHostPtr broken(new FakeHost);
  broken->FailQuery(E_FAIL);
  ExpectFailure(raw_->SetClientServices(broken->Unknown()), 0x80004005, "Unknown Error");
}

TEST_F(ConnectionModelObject, CallerOfTheFirstInterfaceGetsTheWords) {
  EXPECT_EQ(Thrown([this] { ThrowIfFailed(Execute(), model_.get(), IConnectionModel::kIid); }),
            "_com_error 0x80020009 Session does not exist.");
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(ConnectionModelObject, CallerOfTheRawInterfaceFindsTheRecordWaiting) {
  EXPECT_EQ(
      Thrown([this] { ThrowIfFailed(raw_->SetServer(u"srv", u""), raw_.get(), IConnectionModelRaw::kIid); }),
      "_com_error 0x80020009 <null>");
  EXPECT_EQ(TakenWords(), "Cannot parse url, expecting 'http://' after protocol name.");
}

TEST_F(ConnectionModelObject, MissingPlaceForTheResultIsRefusedUnsent) {
  model_->SetUSID(u"u1");
  EXPECT_EQ(model_->Execute(u"VBScript", u"1", nullptr, nullptr), E_POINTER);
  EXPECT_EQ(model_->ExecuteFile(u"f", nullptr, nullptr), E_POINTER);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(ConnectionModelObject, ResultReplacesWhatStoodInItsPlace) {
  model_->SetUSID(u"u1");
  http_.Answer(kScriptRan);
  result_ = Variant::FromString(u"before");
  ExpectSuccess(Execute());
  EXPECT_EQ(Shown(result_.Text()), "done");
}

TEST_F(ConnectionModelObject, FailureLeavesThePlaceOfTheResult) {
  result_ = Variant::FromString(u"before");
  EXPECT_EQ(Execute(), DISP_E_EXCEPTION);
  EXPECT_EQ(Shown(result_.Text()), "before");
}

TEST_F(ConnectionModelObject, LastReleaseLetsTheServicesGoAndSendsNothing) {
  model_->SetUSID(u"u1");
  raw_.reset();
  model_.reset();
  EXPECT_EQ(host_->References(), 1u);
  EXPECT_TRUE(http_.Calls().empty());
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ConnectionModelObject, ModelOutlivesACallInWhichItsHostReleasesIt) {
  http_.Answer(kSessionOpened);
  raw_.reset();
  IConnectionModel* model = model_.get();
  host_->OnSinkCall([this] { model_.reset(); });
  EXPECT_EQ(model->CreateUserSession(u"Username=joe;"), S_OK);
  EXPECT_EQ(host_->Calls().size(), 3u);
  EXPECT_EQ(host_->References(), 1u);
}

TEST_F(ConnectionModelObject, ServicesOutliveACallInWhichTheyAreReplaced) {
  http_.Answer(kSessionOpened);
  FakeHost* host = host_.get();
  std::vector<std::string> calls;
  host->OnSinkCall([&] {
    calls = host->Calls();
    raw_->SetClientServices(nullptr);
    host_.reset();
  });
  EXPECT_EQ(model_->CreateUserSession(u"Username=joe;"), S_OK);
  EXPECT_EQ(calls.size(), 3u);
}

TEST_F(ConnectionModelObject, ReferencesToAListAreGivenBack) {
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->Put(u"a", Variant::FromInt(1), u"int");
  model_->SetUSID(u"u1");
  http_.Answer(kScriptRan);
  ExpectSuccess(Execute(list.get()));
  http_.Fail(HttpStep::kSend, E_FAIL, u"reset", 2);
  EXPECT_EQ(Execute(list.get()), DISP_E_EXCEPTION);
  EXPECT_EQ(list->References(), 1u);
}

}  // namespace
}  // namespace qv
