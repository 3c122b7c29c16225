// The logic behind the client object: its model. What it asks the host, in which order, and what reaches the
// model.
#include "session/client_logic.h"

#include <ostream>

#include "automation/slot_order.h"
#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

constexpr char kNoUrl[] = "_com_error 0x80020009 Cannot parse url, expecting 'http://' after protocol name.";

TEST_F(ClientLogic, InitAsksForTheServicesAndThenForTheSession) {
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(log_, (HostLog{"GetService(QvClientServices)", "GetUsid"}));
}

TEST_F(ClientLogic, InitKeepsTheServicesAndNotTheProvider) {
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(provider_->References(), 1u);
  // The test, the provider, the client.
  EXPECT_EQ(services_->References(), 3u);
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(services_->References(), 3u);
}

TEST_F(ClientLogic, InitMakesTheModelOnce) {
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(ModuleLocks(), 1);
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(ModuleLocks(), 1);
}

TEST_F(ClientLogic, InitGivesTheServiceRoomFor256Units) {
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(services_->Found(), "256 zero units");
}

TEST_F(ClientLogic, InitWithoutProviderIsANullReference) {
  EXPECT_EQ(Init(nullptr), kNoPointer);
  const CountingObjectPtr stranger(new CountingObject);
  EXPECT_EQ(Init(stranger.get()), kNoPointer);
  EXPECT_EQ(stranger->References(), 1u);
  // Nothing was made, nobody was asked.
  EXPECT_EQ(ModuleLocks(), 0);
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientLogic, InitWithProviderWhoseQueryFailsBringsItsCode) {
  provider_->FailQuery(E_ACCESSDENIED);
  EXPECT_EQ(Init(provider_.get()), "_com_error 0x80070005 <null>");
  EXPECT_EQ(ModuleLocks(), 0);
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientLogic, InitWithoutServiceIsANullReferenceAfterTheModelWasMade) {
  provider_->Provide(nullptr);
  EXPECT_EQ(Init(provider_.get()), kNoPointer);
  EXPECT_EQ(log_, HostLog{"GetService(QvClientServices)"});
  EXPECT_EQ(ModuleLocks(), 1);
}

TEST_F(ClientLogic, InitWithProviderThatFailsIsANullReference) {
  provider_->Fail(E_FAIL);
  EXPECT_EQ(Init(provider_.get()), kNoPointer);
  EXPECT_EQ(ModuleLocks(), 1);
}

TEST_F(ClientLogic, InitWithServiceOfAnotherKindIsANullReference) {
  const CountingObjectPtr stranger(new CountingObject);
  provider_->Provide(stranger.get());
  EXPECT_EQ(Init(provider_.get()), kNoPointer);
  EXPECT_EQ(ModuleLocks(), 1);
  EXPECT_EQ(stranger->References(), 2u);  // the test, the provider
  provider_->Provide(nullptr);
}

TEST_F(ClientLogic, InitWithServiceWhoseQueryFailsBringsItsCodeBeforeTheModelIsMade) {
  services_->FailQuery(E_FAIL);
  EXPECT_EQ(Init(provider_.get()), "_com_error 0x80004005 <null>");
  EXPECT_EQ(ModuleLocks(), 0);
  EXPECT_EQ(services_->References(), 2u);
}

TEST_F(ClientLogic, InitWithoutServicesLetsTheEarlierOnesGo) {
  MakeReady();
  provider_->Provide(nullptr);
  EXPECT_EQ(services_->References(), 2u);  // the test, the client
  EXPECT_EQ(Init(provider_.get()), kNoPointer);
  EXPECT_EQ(services_->References(), 1u);
  EXPECT_EQ(ReadModel(), kNoPointer);
}

TEST_F(ClientLogic, FailedInitWithoutProviderKeepsTheEarlierServices) {
  MakeReady();
  EXPECT_EQ(Init(nullptr), kNoPointer);
  EXPECT_EQ(ReadModel(), "nothing");
}

TEST_F(ClientLogic, SecondInitReplacesTheServices) {
  MakeReady();
  const SpeakingServicesPtr second(new SpeakingServices(&log_));
  second->Answer("GetUsid", Replaces(u"other"));
  provider_->Provide(second->Unknown());
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(services_->References(), 1u);
  EXPECT_EQ(second->References(), 3u);
  EXPECT_EQ(SessionOf(client_->get_ConnectionModel().get()), "other");
  provider_->Provide(nullptr);
}

struct UsidRow {
  const char* name;
  TextAnswer answer;
  std::string session;
};
void PrintTo(const UsidRow& row, std::ostream* out) {
  *out << row.name;
}
class AdoptedSession : public ClientLogic, public testing::WithParamInterface<UsidRow> {
 protected:
  // The model, reached without a further question to the services.
  IConnectionModelPtr ModelWithoutQuestion() {
    services_->Answer("GetUsid", Nulls());
    return client_->get_ConnectionModel();
  }
};

TEST_P(AdoptedSession, ByInit) {
  services_->Answer("GetUsid", GetParam().answer);
  EXPECT_EQ(Init(provider_.get()), "nothing");
  client_->put_ServerName(u"http://srv");
  EXPECT_EQ(SessionOf(ModelWithoutQuestion().get()), GetParam().session);
}

TEST_P(AdoptedSession, ByEachReadOfTheModel) {
  MakeReady();
  services_->Answer("GetUsid", GetParam().answer);
  EXPECT_EQ(SessionOf(client_->get_ConnectionModel().get()), GetParam().session);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, AdoptedSession,
    testing::Values(UsidRow{"Filled", Fills(u"u1"), "u1"}, UsidRow{"Replaced", Replaces(u"u2"), "u2"},
                    UsidRow{"ReplacedByALongOne", Replaces(std::u16string(300, u'x')), std::string(300, 'x')},
                    UsidRow{"FilledToTheLastUnit", Fills(std::u16string(256, u'y')), std::string(256, 'y')},
                    UsidRow{"Nulled", Nulls(), "none"}, UsidRow{"LeftAlone", TextAnswer(), "none"},
                    UsidRow{"Emptied", Replaces(u""), "none"}),
    [](const testing::TestParamInfo<UsidRow>& row) { return std::string(row.param.name); });

TEST_F(ClientLogic, CodesOfTheServicesAreNotLookedAt) {
  services_->Fail(E_FAIL);
  services_->Answer("GetUsid", Replaces(u"u1"));
  services_->Answer("GetReplicaId", Replaces(u"r"));
  services_->Answer("GetUserName", Replaces(u"joe"));
  MakeReady();
  EXPECT_EQ(SessionOf(client_->get_ConnectionModel().get()), "u1");
  WideString user;
  EXPECT_EQ(client_->get_ConnectionString()->get_UserName(&user), S_OK);
  EXPECT_EQ(Shown(user), "joe");
}

TEST_F(ClientLogic, InitWithoutSessionTakesTheModelsOwn) {
  MakeReady();
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  EXPECT_EQ(model->SetUSID(u"mine"), S_OK);
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(SessionOf(model.get()), "none");
}

TEST_F(ClientLogic, ReadOfTheModelWithoutSessionLeavesTheModelsOwn) {
  MakeReady();
  EXPECT_EQ(client_->get_ConnectionModel()->SetUSID(u"mine"), S_OK);
  EXPECT_EQ(SessionOf(client_->get_ConnectionModel().get()), "mine");
}

TEST_F(ClientLogic, ReadOfTheModelTakesAnEmptySessionToo) {
  MakeReady();
  EXPECT_EQ(client_->get_ConnectionModel()->SetUSID(u"mine"), S_OK);
  services_->Answer("GetUsid", Replaces(u""));
  EXPECT_EQ(SessionOf(client_->get_ConnectionModel().get()), "none");
}

// ConnectionModel.

TEST_F(ClientLogic, ModelIsOneAndTheSame) {
  MakeReady();
  const IConnectionModelPtr first = client_->get_ConnectionModel();
  EXPECT_EQ(client_->get_ConnectionModel(), first);
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(client_->get_ConnectionModel(), first);
  EXPECT_EQ(ModuleLocks(), 1);
}

TEST_F(ClientLogic, ReadOfTheModelAsksForTheSessionEachTime) {
  MakeReady();
  client_->get_ConnectionModel();
  EXPECT_EQ(services_->Found(), "256 zero units");
  client_->get_ConnectionModel();
  EXPECT_EQ(log_, (HostLog{"GetUsid", "GetUsid"}));
}

TEST_F(ClientLogic, ModelHoldsTheServicesToo) {
  MakeReady();
  EXPECT_EQ(services_->References(), 3u);
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  EXPECT_EQ(services_->References(), 4u);
  client_->get_ConnectionModel();
  EXPECT_EQ(services_->References(), 4u);
  client_.reset();
  EXPECT_EQ(services_->References(), 3u);
}

TEST_F(ClientLogic, ModelTellsTheServicesOfItsSession) {
  MakeReady();
  services_->Answer("GetUsid", Replaces(u"u1"));
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  log_.clear();
  EXPECT_EQ(SessionOf(model.get()), "u1");
  EXPECT_EQ(log_, HostLog{"ClearSession"});
}

TEST_F(ClientLogic, ModelOutlivesTheClientAndItsSessionStays) {
  MakeReady();
  services_->Answer("GetUsid", Replaces(u"u1"));
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  FakeHttp http;
  client_.reset();
  EXPECT_TRUE(http.Calls().empty());
  EXPECT_EQ(SessionOf(model.get()), "u1");
}

TEST_F(ClientLogic, ServerAndProxyReachTheModelAtTheNextRead) {
  MakeReady();
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  EXPECT_EQ(ServerOf(model.get()), "Open(http, srv, 80, , , )");
  client_->put_ServerName(u"http://other:81");
  client_->put_Proxy(u"p:99");
  EXPECT_EQ(ServerOf(model.get()), "Open(http, srv, 80, , , )");
  client_->get_ConnectionModel();
  EXPECT_EQ(ServerOf(model.get()), "Open(http, other, 81, , , p)");
  client_->put_Proxy(u"@PROXY@");
  client_->get_ConnectionModel();
  EXPECT_EQ(ServerOf(model.get()), "Open(http, other, 81, , , )");
}

TEST_F(ClientLogic, ModelBeforeInitIsANullReference) {
  client_->put_ServerName(u"http://srv");
  EXPECT_EQ(ReadModel(), kNoPointer);
  // It was made all the same.
  EXPECT_EQ(ModuleLocks(), 1);
  EXPECT_EQ(ReadModel(), kNoPointer);
  EXPECT_EQ(ModuleLocks(), 1);
}

TEST_F(ClientLogic, BadServerNameIsFoundBeforeMissingServices) {
  client_->put_ServerName(u"srv");
  EXPECT_EQ(ReadModel(), kNoUrl);
}

TEST_F(ClientLogic, BadServerNameBringsItsWordsAndAsksNobody) {
  MakeReady();
  client_->put_ServerName(u"srv");
  EXPECT_EQ(ReadModel(), kNoUrl);
  EXPECT_TRUE(log_.empty());
  EXPECT_EQ(services_->References(), 3u);
}

TEST_F(ClientLogic, EmptyServerNameIsABadOne) {
  MakeReady();
  client_->put_ServerName(u"");
  EXPECT_EQ(ReadModel(), kNoUrl);
  client_->put_ServerName(WideString());
  EXPECT_EQ(ReadModel(), kNoUrl);
}

TEST_F(ClientLogic, ServicesThatTheModelCannotAskBringTheirCode) {
  MakeReady();
  services_->FailQuery(E_FAIL);
  EXPECT_EQ(ReadModel(), "_com_error 0x80004005 Unknown Error");
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientLogic, ModelAfterAFailedReadWorks) {
  MakeReady();
  client_->put_ServerName(u"srv");
  EXPECT_EQ(ReadModel(), kNoUrl);
  client_->put_ServerName(u"http://srv");
  EXPECT_EQ(ReadModel(), "nothing");
}

// Without services the model's own reference goes too.
TEST_F(ClientLogic, ReadWithoutServicesTakesThemFromTheModel) {
  MakeReady();
  services_->Answer("GetUsid", Replaces(u"u1"));
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  provider_->Provide(nullptr);
  EXPECT_EQ(Init(provider_.get()), kNoPointer);
  EXPECT_EQ(services_->References(), 2u);  // the test, the model
  EXPECT_EQ(ReadModel(), kNoPointer);
  EXPECT_EQ(services_->References(), 1u);
  EXPECT_EQ(SessionOf(model.get()), "u1");  // Init did not come so far as to take it
}

}  // namespace
}  // namespace qv
