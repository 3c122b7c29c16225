// The client's logic: the objects that it returns beside the model.
#include <iterator>

#include "automation/slot_order.h"
#include "session/client_logic.h"

namespace qv {
namespace {

using Getter = HRESULT (IConnectionString::*)(WideString*);
std::string FieldOf(const IConnectionStringPtr& credentials, Getter get) {
  WideString text(u"?");
  EXPECT_EQ((credentials.get()->*get)(&text), S_OK);
  return Shown(text);
}

// The services are asked twice, each time with one and the same text.
TEST_F(ClientLogic, ConnectionStringHoldsTheReplicaIdAndTheUserName) {
  const struct {
    const char* name;
    TextAnswer replica;
    TextAnswer user;
    const char* replicaId;
    const char* userName;
    const char* foundByUser;  // the text as GetUserName found it
  } rows[] = {{"replaced", Replaces(u"rep"), Replaces(u"joe"), "rep", "joe", "rep"},
              {"filled", Fills(u"replica"), Fills(u"joe"), "replica", "joe", "replica"},
              {"user left alone", Replaces(u"rep"), TextAnswer(), "rep", "rep", "rep"},
              {"no replica", Nulls(), Replaces(u"joe"), "<null>", "joe", "<null>"},
              {"no user", Replaces(u"rep"), Nulls(), "rep", "<null>", "rep"},
              {"neither", Nulls(), Nulls(), "<null>", "<null>", "<null>"},
              {"both left alone", TextAnswer(), TextAnswer(), "", "", "256 zero units"},
              {"empty replica", Replaces(u""), Replaces(u"joe"), "", "joe", "0 zero units"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Restart();
    MakeReady();
    services_->Answer("GetReplicaId", row.replica);
    services_->Answer("GetUserName", row.user);
    const IConnectionStringPtr credentials = client_->get_ConnectionString();
    EXPECT_EQ(FieldOf(credentials, &IConnectionString::get_ReplicaID), row.replicaId);
    EXPECT_EQ(FieldOf(credentials, &IConnectionString::get_UserName), row.userName);
    EXPECT_EQ(services_->Found(), row.foundByUser);
    EXPECT_EQ(log_, (HostLog{"GetReplicaId", "GetUserName"}));
    for (const Getter get : {&IConnectionString::get_UserPassword, &IConnectionString::get_DatabaseName,
                             &IConnectionString::get_DatabaseID})
      EXPECT_EQ(FieldOf(credentials, get), "<null>");
  }
}

TEST_F(ClientLogic, ReplicaIdGetsRoomFor256Units) {
  MakeReady();
  std::size_t room = 0;
  services_->Answer("GetReplicaId", [&](BStr* text) { room = StringLength(*text); });
  client_->get_ConnectionString();
  EXPECT_EQ(room, 256U);
}

TEST_F(ClientLogic, ConnectionStringNeedsInitAndNoServerName) {
  EXPECT_EQ(Thrown([this] { client_->get_ConnectionString(); }), kNoPointer);
  EXPECT_EQ(ModuleLocks(), 0);
  ASSERT_EQ(Init(), "nothing");
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
  EXPECT_EQ(url->AddRef(), 2U);
  EXPECT_EQ(url->Release(), 1U);
}

TEST_F(ClientLogic, ServerNameIsKeptUnchecked) {
  EXPECT_EQ(Shown(client_->get_ServerName()), "");
  for (const WideString& text : {WideString(u"srv"), WideString(u"http://srv/"), WideString(u""),
                                 WideString(u"@PROXY@"), WideString(u" \u00e9\n"), WideString()}) {
    client_->put_ServerName(text);
    EXPECT_EQ(Shown(client_->get_ServerName()), Shown(text));
  }
}

TEST_F(ClientLogic, ProxyIsKeptUnlessItIsThePlaceholderForNone) {
  EXPECT_EQ(Shown(client_->get_Proxy()), "");
  const struct {
    WideString text;
    const char* kept;
  } rows[] = {{u"host:8080", "host:8080"},
              {u"@PROXY@", ""},
              {u"@proxy@", "@proxy@"},
              {u"@PROXY@ ", "@PROXY@ "},
              {u"@PROXY", "@PROXY"},
              {u" @PROXY@", " @PROXY@"},
              {std::u16string_view(u"@PROXY@\0x", 9), "@PROXY@\\u0000x"},
              {u"", ""},
              {WideString(), "<null>"}};
  for (const auto& row : rows) {
    client_->put_Proxy(u"before");
    client_->put_Proxy(row.text);
    EXPECT_EQ(Shown(client_->get_Proxy()), row.kept);
  }
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
  const SpeakingServicesPtr second(new SpeakingServices(&log_));
  second->Answer("GetUsid", Nulls());
  services_->Answer("GetUsid", [&](BStr* text) {
    ReplaceString(text, u"u1");
    provider_->Provide(second->Unknown());
    EXPECT_EQ(Init(), "nothing");
    EXPECT_EQ(ReadModel(), "nothing");  // releases the model's reference, too
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 2);
  });
  EXPECT_EQ(SessionOfModel(), "u1");
  provider_->Provide(nullptr);
}

TEST_F(ClientLogic, ServicesMayGoWhileInitAsksThem) {
  services_->Answer("GetUsid", [&](BStr*) {
    provider_->Provide(nullptr);
    EXPECT_EQ(Init(), kNoPointer);
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 1);
  });
  EXPECT_EQ(Init(), "nothing");
  EXPECT_EQ(SpeakingServices::Live(), 0);
}

TEST_F(ClientLogic, ServicesMayGoWhileTheyFillTheConnectionString) {
  MakeReady();
  services_->Answer("GetReplicaId", [&](BStr* text) {
    ReplaceString(text, u"rep");
    provider_->Provide(nullptr);
    EXPECT_EQ(Init(), kNoPointer);
    services_.reset();
  });
  IConnectionStringPtr credentials;
  const std::string thrown = Thrown([&] { credentials = client_->get_ConnectionString(); });
  EXPECT_TRUE(thrown == "nothing" || thrown == kNoPointer) << thrown;
}

template <class... Operations>
void ExpectOrder(Operations... operations) {
  const std::ptrdiff_t places[] = {PlaceOf(&operations)...};
  for (std::size_t i = 1; i < std::size(places); ++i) EXPECT_EQ(places[i], places[i - 1] + kSlot);
}

TEST(ClientLogicOrder, OperationsAreInTheirOrder) {
  using Client = QvScriptwellsImpl;
  ExpectOrder(&Client::get_ConnectionModel, &Client::get_Url, &Client::get_Duration,
              &Client::get_ConnectionString, &Client::get_AttachedFile, &Client::get_Parameters,
              &Client::get_ServerName, &Client::put_ServerName, &Client::get_Proxy, &Client::put_Proxy,
              &Client::Init);
}

}  // namespace
}  // namespace qv
