// The logic behind the client object: what it hands out beside the model.
#include "session/client_logic.h"

#include <ostream>

#include "automation/slot_order.h"
#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

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
