// The client's logic and its model: what it asks the host, in which order, and what reaches the model.
#include "session/client_logic.h"

namespace qv {
namespace {

constexpr char kBadServer[] =
    "_com_error 0x80020009 Cannot parse url, expecting 'http://' after protocol name.";

class ClientInit : public ClientLogic {
 protected:
  // A new client's Init locks the module so often and makes these calls.
  void ExpectInit(IUnknown* provider, const std::string& thrown, int locks, const HostLog& log) {
    Restart();
    EXPECT_EQ(Init(provider), thrown);
    EXPECT_EQ(ModuleLocks(), locks);
    EXPECT_EQ(log_, log);
  }
};

TEST_F(ClientInit, AsksForTheServicesAndThenForTheSession) {
  ExpectInit(provider_.get(), "nothing", 1, {"GetService(QvClientServices)", "GetUsid"});
  EXPECT_EQ(services_->Found(), "256 zero units");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(provider_->References(), 1U);
    EXPECT_EQ(services_->References(), 3U);  // the test, the provider, the client
    EXPECT_EQ(ModuleLocks(), 1);
    EXPECT_EQ(Init(), "nothing");
  }
}

TEST_F(ClientInit, WithoutProviderOrServicesIsANullReference) {
  const CountingObjectPtr stranger(new CountingObject);
  ExpectInit(nullptr, kNoPointer, 0, {});
  ExpectInit(stranger.get(), kNoPointer, 0, {});
  EXPECT_EQ(stranger->References(), 1U);
  // From here on the model was made.
  provider_->Provide(nullptr);
  ExpectInit(provider_.get(), kNoPointer, 1, {"GetService(QvClientServices)"});
  provider_->Provide(stranger.get());
  ExpectInit(provider_.get(), kNoPointer, 1, {"GetService(QvClientServices)"});
  EXPECT_EQ(stranger->References(), 2U);  // the test, the provider
  provider_->Provide(services_->Unknown());
  provider_->Fail(E_FAIL);
  ExpectInit(provider_.get(), kNoPointer, 1, {"GetService(QvClientServices)"});
}

TEST_F(ClientInit, FailedQueryBringsItsCodeBeforeTheModelIsMade) {
  services_->FailQuery(E_FAIL);
  ExpectInit(provider_.get(), "_com_error 0x80004005 <null>", 0, {"GetService(QvClientServices)"});
  EXPECT_EQ(services_->References(), 2U);
  provider_->FailQuery(E_ACCESSDENIED);
  ExpectInit(provider_.get(), "_com_error 0x80070005 <null>", 0, {});
}

TEST_F(ClientInit, WithoutServicesReleasesTheEarlierOnes) {
  MakeReady();
  provider_->Provide(nullptr);
  EXPECT_EQ(services_->References(), 2U);  // the test, the client
  EXPECT_EQ(Init(), kNoPointer);
  EXPECT_EQ(services_->References(), 1U);
  EXPECT_EQ(ReadModel(), kNoPointer);
}

TEST_F(ClientInit, WithoutProviderKeepsTheEarlierServices) {
  MakeReady();
  EXPECT_EQ(Init(nullptr), kNoPointer);
  EXPECT_EQ(ReadModel(), "nothing");
}

TEST_F(ClientInit, SecondOneReplacesTheServices) {
  MakeReady();
  const SpeakingServicesPtr second(new SpeakingServices(&log_));
  second->Answer("GetUsid", Replaces(u"other"));
  provider_->Provide(second->Unknown());
  EXPECT_EQ(Init(), "nothing");
  EXPECT_EQ(services_->References(), 1U);
  EXPECT_EQ(second->References(), 3U);
  EXPECT_EQ(SessionOfModel(), "other");
  provider_->Provide(nullptr);
}

// The session.

TEST_F(ClientLogic, SessionIsAdoptedByInitAndByEachReadOfTheModel) {
  const struct {
    const char* name;
    TextAnswer answer;
    std::string session;
  } rows[] = {{"filled", Fills(u"u1"), "u1"},
              {"replaced", Replaces(u"u2"), "u2"},
              {"replaced by a long one", Replaces(std::u16string(300, u'x')), std::string(300, 'x')},
              {"filled to the last unit", Fills(std::u16string(256, u'y')), std::string(256, 'y')},
              {"nulled", Nulls(), "none"},
              {"left alone", TextAnswer(), "none"},
              {"emptied", Replaces(u""), "none"}};
  for (const auto& row : rows) {
    for (const bool byInit : {true, false}) {
      SCOPED_TRACE(std::string(row.name) + (byInit ? " by Init" : " by a read"));
      Restart();
      services_->Answer("GetUsid", byInit ? row.answer : Nulls());
      MakeReady();
      services_->Answer("GetUsid", byInit ? Nulls() : row.answer);
      EXPECT_EQ(SessionOfModel(), row.session);
      EXPECT_EQ(ModuleLocks(), 1);
    }
  }
}

TEST_F(ClientLogic, CodesOfTheServicesAreNotLookedAt) {
  services_->Fail(E_FAIL);
  services_->Answer("GetUsid", Replaces(u"u1"));
  services_->Answer("GetReplicaId", Replaces(u"r"));
  services_->Answer("GetUserName", Replaces(u"joe"));
  MakeReady();
  EXPECT_EQ(SessionOfModel(), "u1");
  WideString user;
  EXPECT_EQ(client_->get_ConnectionString()->get_UserName(&user), S_OK);
  EXPECT_EQ(Shown(user), "joe");
}

TEST_F(ClientLogic, SessionOfTheModelStaysUnlessTheServicesHaveATextOrInitRuns) {
  MakeReady();
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  EXPECT_EQ(model->SetUSID(u"mine"), S_OK);
  EXPECT_EQ(SessionOfModel(), "mine");
  EXPECT_EQ(model->SetUSID(u"mine"), S_OK);
  services_->Answer("GetUsid", Replaces(u""));
  EXPECT_EQ(SessionOfModel(), "none");
  services_->Answer("GetUsid", Nulls());
  EXPECT_EQ(model->SetUSID(u"mine"), S_OK);
  EXPECT_EQ(Init(), "nothing");
  EXPECT_EQ(SessionOf(model), "none");
}

// ConnectionModel.

TEST_F(ClientLogic, ModelIsOneAndTheSame) {
  MakeReady();
  const IConnectionModelPtr first = client_->get_ConnectionModel();
  EXPECT_EQ(client_->get_ConnectionModel(), first);
  EXPECT_EQ(Init(), "nothing");
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
  EXPECT_EQ(services_->References(), 3U);
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  EXPECT_EQ(services_->References(), 4U);
  client_->get_ConnectionModel();
  EXPECT_EQ(services_->References(), 4U);
  client_.reset();
  EXPECT_EQ(services_->References(), 3U);
}

TEST_F(ClientLogic, ModelReportsToTheServicesAndOutlivesTheClientWithItsSession) {
  MakeReady();
  services_->Answer("GetUsid", Replaces(u"u1"));
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  log_.clear();
  FakeHttp http;
  client_.reset();
  EXPECT_TRUE(http.Calls().empty());
  EXPECT_EQ(SessionOf(model), "u1");
  EXPECT_EQ(log_, HostLog{"ClearSession"});
}

TEST_F(ClientLogic, ServerAndProxyReachTheModelAtTheNextRead) {
  MakeReady();
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  EXPECT_EQ(ServerOf(model), "Open(http, srv, 80, , , )");
  client_->put_ServerName(u"http://other:81");
  client_->put_Proxy(u"p:99");
  EXPECT_EQ(ServerOf(model), "Open(http, srv, 80, , , )");
  client_->get_ConnectionModel();
  EXPECT_EQ(ServerOf(model), "Open(http, other, 81, , , p)");
  client_->put_Proxy(u"@PROXY@");
  client_->get_ConnectionModel();
  EXPECT_EQ(ServerOf(model), "Open(http, other, 81, , , )");
}

TEST_F(ClientLogic, ModelBeforeInitIsANullReferenceAfterItsServerIsChecked) {
  client_->put_ServerName(u"srv");
  EXPECT_EQ(ReadModel(), kBadServer);
  client_->put_ServerName(u"http://srv");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ReadModel(), kNoPointer);
    EXPECT_EQ(ModuleLocks(), 1);  // it was made all the same
  }
}

TEST_F(ClientLogic, BadServerNameBringsItsMessageAndAsksNobody) {
  MakeReady();
  for (const WideString& name : {WideString(u"srv"), WideString(u""), WideString()}) {
    client_->put_ServerName(name);
    EXPECT_EQ(ReadModel(), kBadServer) << Shown(name);
    EXPECT_TRUE(log_.empty());
    EXPECT_EQ(services_->References(), 3U);
  }
  client_->put_ServerName(u"http://srv");
  EXPECT_EQ(ReadModel(), "nothing");
}

TEST_F(ClientLogic, ServicesThatTheModelCannotAskBringTheirCode) {
  MakeReady();
  services_->FailQuery(E_FAIL);
  EXPECT_EQ(ReadModel(), "_com_error 0x80004005 Unknown Error");
  EXPECT_TRUE(log_.empty());
}

TEST_F(ClientLogic, ReadWithoutServicesReleasesThoseOfTheModel) {
  MakeReady();
  services_->Answer("GetUsid", Replaces(u"u1"));
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  provider_->Provide(nullptr);
  EXPECT_EQ(Init(), kNoPointer);
  EXPECT_EQ(services_->References(), 2U);  // the test, the model
  EXPECT_EQ(ReadModel(), kNoPointer);
  EXPECT_EQ(services_->References(), 1U);
  EXPECT_EQ(SessionOf(model), "u1");  // Init did not come so far as to change it
}

}  // namespace
}  // namespace qv
