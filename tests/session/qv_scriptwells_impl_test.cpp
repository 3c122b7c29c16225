// The logic behind the client object: what it asks the host, in which order, and what reaches the model.
#include "session/qv_scriptwells_impl.h"

#include <gtest/gtest.h>

#include <ostream>

#include "automation/module.h"
#include "automation/slot_order.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/speaking_host.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_error.h"
#include "session/session_answers.h"

namespace qv {
namespace {

constexpr char kNoPointer[] = "_com_error 0x80004003 <null>";
constexpr char kNoUrl[] = "_com_error 0x80020009 Cannot parse url, expecting 'http://' after protocol name.";

class ClientLogic : public testing::Test {
 protected:
  ClientLogic()
      : services_(new SpeakingServices(&log_)), provider_(new SpeakingProvider(&log_, services_->Unknown())) {
    EnsureFormaters();
    services_->Answer("GetUsid", Nulls());
    client_.reset(new QvScriptwellsImpl);
  }
  void TearDown() override {
    client_.reset();
    provider_.reset();
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 0);
    EXPECT_EQ(SpeakingProvider::Live(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
    EXPECT_EQ(ModuleLocks(), 0);
  }

  std::string Init(IUnknown* provider) {
    return Thrown([&] { client_->Init(provider); });
  }
  // Ready for ConnectionModel, with nothing noted.
  void MakeReady() {
    ASSERT_EQ(Init(provider_.get()), "nothing");
    client_->put_ServerName(u"http://srv");
    log_.clear();
  }
  std::string ReadModel() {
    return Thrown([this] { client_->get_ConnectionModel(); });
  }
  // The session that a model holds: what it sends when it closes it; "none" when nothing goes out.
  std::string SessionOf(IConnectionModel* model) {
    FakeHttp http;
    http.Answer(kSessionClosed);
    model->CloseUserSession();
    if (http.Bodies().empty()) return "none";
    const std::string& body = http.Bodies()[0];
    const std::string opening = "<usid xsi:type=\"xsd:string\">";
    const std::size_t start = body.find(opening) + opening.size();
    return body.substr(start, body.find("</usid>") - start);
  }
  // Where a model sends its requests.
  std::string ServerOf(IConnectionModel* model) {
    FakeHttp http;
    EXPECT_EQ(model->SetUSID(u"u"), S_OK);
    http.Answer(kSessionClosed);
    model->CloseUserSession();
    const std::vector<std::string> opened = http.CallsNamed("Open(");
    return opened.empty() ? "nowhere" : opened[0];
  }

  HostLog log_;
  SpeakingServicesPtr services_;
  SpeakingProviderPtr provider_;
  std::unique_ptr<QvScriptwellsImpl> client_;
};

// Init.

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

// ConnectionString.

std::string UserOf(IConnectionString* credentials) {
  WideString user(u"?");
  EXPECT_EQ(credentials->get_UserName(&user), S_OK);
  return Shown(user);
}
std::string ReplicaOf(IConnectionString* credentials) {
  WideString replica(u"?");
  EXPECT_EQ(credentials->get_ReplicaID(&replica), S_OK);
  return Shown(replica);
}

struct PrefillRow {
  const char* name;
  TextAnswer replica;
  TextAnswer user;
  const char* replicaId;
  const char* userName;
  const char* foundByUser;  // the text as GetUserName found it
};
void PrintTo(const PrefillRow& row, std::ostream* out) {
  *out << row.name;
}
class PrefilledString : public ClientLogic, public testing::WithParamInterface<PrefillRow> {};

TEST_P(PrefilledString, HoldsTheReplicaIdAndTheUserName) {
  MakeReady();
  services_->Answer("GetReplicaId", GetParam().replica);
  services_->Answer("GetUserName", GetParam().user);
  const IConnectionStringPtr credentials = client_->get_ConnectionString();
  EXPECT_EQ(ReplicaOf(credentials.get()), GetParam().replicaId);
  EXPECT_EQ(UserOf(credentials.get()), GetParam().userName);
  EXPECT_EQ(services_->Found(), GetParam().foundByUser);
  EXPECT_EQ(log_, (HostLog{"GetReplicaId", "GetUserName"}));
  for (const auto get : {&IConnectionString::get_UserPassword, &IConnectionString::get_DatabaseName,
                         &IConnectionString::get_DatabaseID}) {
    WideString text(u"?");
    EXPECT_EQ((credentials.get()->*get)(&text), S_OK);
    EXPECT_TRUE(text.IsNull());
  }
}

// Both are asked with one and the same text.
INSTANTIATE_TEST_SUITE_P(
    Answers, PrefilledString,
    testing::Values(PrefillRow{"Replaced", Replaces(u"rep"), Replaces(u"joe"), "rep", "joe", "rep"},
                    PrefillRow{"Filled", Fills(u"replica"), Fills(u"joe"), "replica", "joe", "replica"},
                    PrefillRow{"UserLeavesWhatItFinds", Replaces(u"rep"), TextAnswer(), "rep", "rep", "rep"},
                    PrefillRow{"NoReplica", Nulls(), Replaces(u"joe"), "<null>", "joe", "<null>"},
                    PrefillRow{"NoUser", Replaces(u"rep"), Nulls(), "rep", "<null>", "rep"},
                    PrefillRow{"Neither", Nulls(), Nulls(), "<null>", "<null>", "<null>"},
                    PrefillRow{"BothLeaveTheRoom", TextAnswer(), TextAnswer(), "", "", "256 zero units"},
                    PrefillRow{"EmptyReplica", Replaces(u""), Replaces(u"joe"), "", "joe", "0 zero units"}),
    [](const testing::TestParamInfo<PrefillRow>& row) { return std::string(row.param.name); });

TEST_F(ClientLogic, ReplicaIdGetsRoomFor256Units) {
  MakeReady();
  std::size_t room = 0;
  services_->Answer("GetReplicaId", [&](BStr* text) { room = StringLength(*text); });
  client_->get_ConnectionString();
  EXPECT_EQ(room, 256u);
}

TEST_F(ClientLogic, ConnectionStringBeforeInitIsANullReference) {
  EXPECT_EQ(Thrown([this] { client_->get_ConnectionString(); }), kNoPointer);
  EXPECT_EQ(ModuleLocks(), 0);
}

TEST_F(ClientLogic, ConnectionStringNeedsNoServerName) {
  ASSERT_EQ(Init(provider_.get()), "nothing");
  EXPECT_NE(client_->get_ConnectionString(), nullptr);
}

// The rest.

TEST_F(ClientLogic, EachReadOfAValueMakesANewObject) {
  MakeReady();
  EXPECT_NE(client_->get_Url(), client_->get_Url());
  EXPECT_NE(client_->get_Duration(), client_->get_Duration());
  EXPECT_NE(client_->get_AttachedFile(), client_->get_AttachedFile());
  EXPECT_NE(client_->get_Parameters(), client_->get_Parameters());
  EXPECT_TRUE(log_.empty());
  EXPECT_NE(client_->get_ConnectionString(), client_->get_ConnectionString());
}

TEST_F(ClientLogic, ValuesNeedNoInit) {
  const IUrlPtr url = client_->get_Url();
  const IDurationPtr span = client_->get_Duration();
  const IAttachedFilePtr file = client_->get_AttachedFile();
  const IParametersPtr list = client_->get_Parameters();
  ASSERT_TRUE(url && span && file && list);
  WideString text(u"?");
  EXPECT_EQ(url->get_UrlCaption(&text), S_OK);
  EXPECT_TRUE(text.IsNull());
  std::int16_t number = 7;
  EXPECT_EQ(span->get_Day(&number), S_OK);
  EXPECT_EQ(number, 0);
  std::int32_t life = 7;
  EXPECT_EQ(file->get_SourceFileLifeTime(&life), S_OK);
  EXPECT_EQ(life, 1);
  EXPECT_EQ(list->Size(&number), S_OK);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(url->AddRef(), 2u);
  EXPECT_EQ(url->Release(), 1u);
}

TEST_F(ClientLogic, NamesAreEmptyAtFirst) {
  EXPECT_EQ(Shown(client_->get_ServerName()), "");
  EXPECT_EQ(Shown(client_->get_Proxy()), "");
}

TEST_F(ClientLogic, ServerNameIsKeptUnchecked) {
  for (const char16_t* text : {u"srv", u"http://srv/", u"", u"@PROXY@", u" \u00e9\n"}) {
    client_->put_ServerName(text);
    EXPECT_EQ(client_->get_ServerName(), WideString(text));
  }
  client_->put_ServerName(WideString());
  EXPECT_TRUE(client_->get_ServerName().IsNull());
}

TEST_F(ClientLogic, ProxyIsKeptButForTheWordForNone) {
  struct Row {
    const char16_t* text;
    const char* kept;
  };
  const Row rows[] = {{u"host:8080", "host:8080"},
                      {u"@PROXY@", ""},
                      {u"@proxy@", "@proxy@"},
                      {u"@PROXY@ ", "@PROXY@ "},
                      {u"@PROXY", "@PROXY"},
                      {u" @PROXY@", " @PROXY@"},
                      {u"", ""},
                      {nullptr, "<null>"}};
  for (const Row& row : rows) {
    client_->put_Proxy(u"before");
    client_->put_Proxy(row.text);
    EXPECT_EQ(Shown(client_->get_Proxy()), row.kept);
  }
}

TEST_F(ClientLogic, ProxyWithANullUnitBehindTheWordIsAnother) {
  client_->put_Proxy(WideString(std::u16string_view(u"@PROXY@\0x", 9)));
  EXPECT_EQ(client_->get_Proxy().size(), 9u);
}

TEST_F(ClientLogic, ReadsShareTheText) {
  const WideString text(u"http://srv");
  client_->put_ServerName(text);
  EXPECT_EQ(client_->get_ServerName().data(), text.data());
  client_->put_Proxy(text);
  EXPECT_EQ(client_->get_Proxy().data(), text.data());
}

// Services that call back into the client, as single-threaded hosts may.

TEST_F(ClientLogic, ServicesMayBeReplacedWhileTheyAreAsked) {
  MakeReady();
  SpeakingServices* first = services_.get();
  const SpeakingServicesPtr second(new SpeakingServices(&log_));
  second->Answer("GetUsid", Nulls());
  first->Answer("GetUsid", [&](BStr* text) {
    ReplaceString(text, u"u1");
    provider_->Provide(second->Unknown());
    EXPECT_EQ(Init(provider_.get()), "nothing");
    EXPECT_EQ(ReadModel(), "nothing");  // takes the model's reference too
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 2);
  });
  const IConnectionModelPtr model = client_->get_ConnectionModel();
  EXPECT_EQ(SessionOf(model.get()), "u1");
  provider_->Provide(nullptr);
}

TEST_F(ClientLogic, ServicesMayGoWhileInitAsksThem) {
  services_->Answer("GetUsid", [&](BStr*) {
    provider_->Provide(nullptr);
    EXPECT_EQ(Init(provider_.get()), kNoPointer);
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 1);
  });
  EXPECT_EQ(Init(provider_.get()), "nothing");
  EXPECT_EQ(SpeakingServices::Live(), 0);
}

TEST_F(ClientLogic, ServicesMayGoWhileTheyPrefill) {
  MakeReady();
  services_->Answer("GetReplicaId", [&](BStr* text) {
    ReplaceString(text, u"rep");
    provider_->Provide(nullptr);
    EXPECT_EQ(Init(provider_.get()), kNoPointer);
    services_.reset();
  });
  IConnectionStringPtr credentials;
  const std::string thrown = Thrown([&] { credentials = client_->get_ConnectionString(); });
  EXPECT_TRUE(thrown == "nothing" || thrown == kNoPointer) << thrown;
}

TEST(ClientLogicOrder, OperationsStandInTheirOrder) {
  const auto model = &QvScriptwellsImpl::get_ConnectionModel;
  const auto url = &QvScriptwellsImpl::get_Url;
  const auto span = &QvScriptwellsImpl::get_Duration;
  const auto credentials = &QvScriptwellsImpl::get_ConnectionString;
  const auto file = &QvScriptwellsImpl::get_AttachedFile;
  const auto list = &QvScriptwellsImpl::get_Parameters;
  const auto getServer = &QvScriptwellsImpl::get_ServerName;
  const auto putServer = &QvScriptwellsImpl::put_ServerName;
  const auto getProxy = &QvScriptwellsImpl::get_Proxy;
  const auto putProxy = &QvScriptwellsImpl::put_Proxy;
  const auto init = &QvScriptwellsImpl::Init;
  const void* const rest[] = {&url,       &span,      &credentials, &file,     &list,
                              &getServer, &putServer, &getProxy,    &putProxy, &init};
  std::ptrdiff_t place = PlaceOf(&model);
  for (const void* operation : rest) EXPECT_EQ(PlaceOf(operation), place += kSlot);
}

}  // namespace
}  // namespace qv
