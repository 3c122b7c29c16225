// The client object as hosts meet it: typed, and by name and id.
#include <gtest/gtest.h>

#include "automation/late_call.h"
#include "com/module.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_http.h"
#include "fixtures/soap_texts.h"
#include "fixtures/speaking_host.h"
#include "fixtures/thrown.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

constexpr char kNoUrl[] = "Cannot parse url, expecting 'http://' after protocol name.";

// The message that waits, whatever else the record says.
std::string WaitingMessage() {
  ErrorInfo info;
  return GetErrorInfo(&info) ? Shown(info.description) : "no record";
}

class ClientObject : public testing::Test {
 protected:
  ClientObject() {
    FillFormaters();
    services_->Answer("GetUsid", Nulls());
    LeaveStaleRecord();
  }
  void TearDown() override {
    raw_.reset();
    client_.reset();
    provider_.reset();
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 0);
    EXPECT_EQ(SpeakingProvider::Live(), 0);
    EXPECT_EQ(ModuleLocks(), 0);
    ClearErrorInfo();
  }

  void MakeReady() {
    ASSERT_EQ(raw_->Init(provider_.get()), S_OK);
    ASSERT_EQ(client_->put_ServerName(u"http://srv"), S_OK);
    log_.clear();
    LeaveStaleRecord();
  }
  IConnectionModelPtr Model() {
    IConnectionModelPtr model;
    EXPECT_EQ(client_->ConnectionModel(Put(model)), S_OK);
    return model;
  }
  // What a host does that lets go of the client while the client asks it.
  void ReleaseClient() {
    raw_.reset();
    client_.reset();
  }
  static void ExpectSuccess(HRESULT code) {
    EXPECT_EQ(code, S_OK);
    EXPECT_EQ(WaitingMessage(), "no record");
    LeaveStaleRecord();
  }
  static void ExpectFailure(HRESULT code, std::uint32_t expected, const std::string& message) {
    EXPECT_EQ(static_cast<std::uint32_t>(code), expected);
    EXPECT_EQ(WaitingMessage(), message);
  }
  // The same through the table; source, help file and context are the object's own business.
  static void ExpectLateFailure(LateCall call, const char* code, const char* message, const char* result) {
    EXPECT_EQ(call.Code(), code);
    EXPECT_EQ(ShownCode(call.failure.scode), code);
    EXPECT_EQ(Shown(call.failure.bstrDescription), message);
    EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
    EXPECT_EQ(ShownValue(call.result), result);
    EXPECT_EQ(WaitingMessage(), "no record");
  }

  HostLog log_;
  SpeakingServicesPtr services_{new SpeakingServices(&log_)};
  SpeakingProviderPtr provider_{new SpeakingProvider(&log_, services_->Unknown())};
  IQvScriptwellsPtr client_ = CreateQvScriptwells();
  IQvClientServiceRawPtr raw_ = As<IQvClientServiceRaw>(client_);
};

TEST_F(ClientObject, WholeSessionRuns) {
  FakeHttp http;
  MakeReady();
  const IConnectionModelPtr model = Model();
  services_->Answer("GetReplicaId", Replaces(u"r"));
  services_->Answer("GetUserName", Replaces(u"joe"));
  IConnectionStringPtr credentials;
  ASSERT_EQ(client_->ConnectionString(Put(credentials)), S_OK);
  WideString text;
  ASSERT_EQ(credentials->ToString(&text), S_OK);
  EXPECT_EQ(Shown(text), "DbReplicationId=r;Username=joe;Password=;");
  for (const std::u16string_view answer : {kSessionOpened, kScriptDone, kSessionClosed}) http.Answer(answer);
  EXPECT_EQ(model->CreateUserSession(text), S_OK);
  Variant result;
  EXPECT_EQ(model->Execute(u"VBScript", u"1", nullptr, &result), S_OK);
  EXPECT_EQ(ShownValue(result), "VT_BSTR done");
  EXPECT_EQ(model->CloseUserSession(), S_OK);
  EXPECT_EQ(log_, (HostLog{"GetUsid", "GetReplicaId", "GetUserName", "SetUsid", "SetUserName",
                           "SetDatabaseIds", "ClearSession"}));
}

TEST_F(ClientObject, WholeSessionRunsByName) {
  FakeHttp http;
  EXPECT_EQ(CallByName(raw_.get(), u"init", {Variant::FromObject(provider_.get())}), "VT_EMPTY");
  EXPECT_EQ(WriteByName(client_.get(), u"servername", Text(u"http://srv")), "VT_EMPTY");
  EXPECT_EQ(WriteByName(client_.get(), u"proxy", Text(u"@PROXY@")), "VT_EMPTY");
  EXPECT_EQ(ReadByName(client_.get(), u"Proxy"), "VT_BSTR ");
  LateCall first(client_.get(), IdOf(client_.get(), u"CONNECTIONMODEL"), DISPATCH_PROPERTYGET);
  EXPECT_EQ(first.Code(), "0x00000000");
  LateCall second(client_.get(), 1);
  EXPECT_EQ(second.Code(), "0x00000000");
  IDispatch* model = DispatchOf(first.result);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(DispatchOf(second.result), model);
  LateCall list(client_.get(), IdOf(client_.get(), u"Parameters"));
  EXPECT_EQ(list.Code(), "0x00000000");

  for (const std::u16string_view answer : {kSessionOpened, kScriptDone, kSessionClosed}) http.Answer(answer);
  EXPECT_EQ(CallByName(model, u"CreateUserSession", {Text(u"Username=joe;")}), "VT_EMPTY");
  EXPECT_EQ(CallByName(model, u"Execute", {Text(u"VBScript"), Text(u"1"), list.result}), "VT_BSTR done");
  EXPECT_EQ(CallByName(model, u"CloseUserSession"), "VT_EMPTY");
  EXPECT_EQ(log_, (HostLog{"GetService(QvClientServices)", "GetUsid", "GetUsid", "GetUsid", "SetUsid",
                           "SetUserName", "SetDatabaseIds", "ClearSession"}));
  EXPECT_EQ(http.LiveObjects(), 0);
}

TEST_F(ClientObject, EverySuccessClearsTheStaleRecord) {
  ExpectSuccess(raw_->Init(provider_.get()));
  ExpectSuccess(client_->put_ServerName(u"http://srv"));
  ExpectSuccess(client_->put_Proxy(u""));
  WideString text;
  ExpectSuccess(client_->get_ServerName(&text));
  EXPECT_EQ(Shown(text), "http://srv");
  ExpectSuccess(client_->get_Proxy(&text));
  EXPECT_EQ(Shown(text), "");
  Model();
  EXPECT_EQ(WaitingMessage(), "no record");
}

TEST_F(ClientObject, EachValueIsANewObjectWithOneReference) {
  IUrl* url = nullptr;
  EXPECT_EQ(client_->Url(&url), S_OK);
  EXPECT_EQ(IUrlPtr(url, false)->AddRef(), 2U);
  url->Release();
}

TEST_F(ClientObject, ValuesComeByIdInTheirOrder) {
  MakeReady();
  const Guid interfaces[] = {IConnectionModel::kIid,  IUrl::kIid,          IDuration::kIid,
                             IConnectionString::kIid, IAttachedFile::kIid, IParameters::kIid};
  DISPID id = 0;
  for (const Guid& iid : interfaces) {
    LateCall once(client_.get(), ++id);
    LateCall again(client_.get(), id, DISPATCH_PROPERTYGET);
    EXPECT_EQ(once.Code(), "0x00000000");
    EXPECT_EQ(again.Code(), "0x00000000");
    ASSERT_NE(DispatchOf(once.result), nullptr);
    EXPECT_EQ(DispatchOf(once.result) == DispatchOf(again.result), id == 1);
    EXPECT_NE(As<IUnknown>(DispatchOf(once.result), iid), nullptr) << id;
    EXPECT_TRUE(once.FailureUntouched());
  }
}

TEST_F(ClientObject, InitWithoutServicesIsANullReference) {
  const CountingObjectPtr stranger(new CountingObject);
  ExpectFailure(raw_->Init(nullptr), 0x80004003, "Unknown Error");
  ExpectFailure(raw_->Init(stranger.get()), 0x80004003, "Unknown Error");
  provider_->Provide(nullptr);
  ExpectFailure(raw_->Init(provider_.get()), 0x80004003, "Unknown Error");
  ExpectLateFailure(LateCall(raw_.get(), 1).With({FromDispatch(nullptr)}), "0x80004003", "Unknown Error",
                    "VT_EMPTY");
}

TEST_F(ClientObject, InitWithFailingProviderBringsItsCode) {
  provider_->FailQuery(E_ACCESSDENIED);
  ExpectFailure(raw_->Init(provider_.get()), 0x80070005, "Unknown Error");
}

TEST_F(ClientObject, ReadsBeforeInitAreNullReferences) {
  ASSERT_EQ(client_->put_ServerName(u"http://srv"), S_OK);
  int stranger = 0;
  auto* model = reinterpret_cast<IConnectionModel*>(&stranger);
  ExpectFailure(client_->ConnectionModel(&model), 0x80004003, "Unknown Error");
  auto* credentials = reinterpret_cast<IConnectionString*>(&stranger);
  ExpectFailure(client_->ConnectionString(&credentials), 0x80004003, "Unknown Error");
  for (const DISPID id : {1, 4})
    ExpectLateFailure(LateCall(client_.get(), id), "0x80004003", "Unknown Error", "VT_DISPATCH null");
}

TEST_F(ClientObject, BadServerNameBringsItsMessage) {
  MakeReady();
  for (const char16_t* name : {u"srv", u""}) {
    ASSERT_EQ(client_->put_ServerName(name), S_OK);
    IConnectionModel* model = nullptr;
    ExpectFailure(client_->ConnectionModel(&model), 0x80020009, kNoUrl);
    EXPECT_EQ(model, nullptr);
    ExpectLateFailure(LateCall(client_.get(), 1), "0x80020009", kNoUrl, "VT_DISPATCH null");
  }
}

TEST_F(ClientObject, NullOutputParametersAreRefused) {
  MakeReady();
  EXPECT_EQ(client_->get_ServerName(nullptr), E_POINTER);
  EXPECT_EQ(client_->get_Proxy(nullptr), E_POINTER);
  EXPECT_EQ(client_->ConnectionModel(nullptr), E_POINTER);
  EXPECT_EQ(client_->Url(nullptr), E_POINTER);
  EXPECT_EQ(client_->Duration(nullptr), E_POINTER);
  EXPECT_EQ(client_->ConnectionString(nullptr), E_POINTER);
  EXPECT_EQ(client_->AttachedFile(nullptr), E_POINTER);
  EXPECT_EQ(client_->Parameters(nullptr), E_POINTER);
}

TEST_F(ClientObject, ReadyClientNeedsNoMore) {
  services_->Answer("GetUsid", Replaces(u"u1"));
  const IQvScriptwellsPtr ready = CreateQvScriptwells(u"http://srv", u"p:9", provider_.get());
  EXPECT_EQ(CallByName(ready.get(), u"ConnectionModel"), "VT_DISPATCH object");
  EXPECT_EQ(ReadByName(ready.get(), u"ServerName"), "VT_BSTR http://srv");
  EXPECT_EQ(ReadByName(ready.get(), u"Proxy"), "VT_BSTR p:9");
  EXPECT_EQ(Thrown([] { CreateQvScriptwells(u"http://srv", u"", nullptr); }).substr(0, 21),
            "_com_error 0x80004003");
}

TEST_F(ClientObject, ClientOutlivesAReadInWhichItsHostReleasesIt) {
  MakeReady();
  services_->Answer("GetUsid", [this](BStr* text) {
    ReplaceString(text, u"u1");
    ReleaseClient();
  });
  IQvScriptwells* client = client_.get();
  IConnectionModel* model = nullptr;
  EXPECT_EQ(client->ConnectionModel(&model), S_OK);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(IConnectionModelPtr(model, false)->SetUSID(u""), S_OK);
}

TEST_F(ClientObject, ClientOutlivesAnInvokeInWhichItsHostReleasesIt) {
  MakeReady();
  services_->Answer("GetReplicaId", [this](BStr*) { ReleaseClient(); });
  LateCall call(client_.get(), 4);
  EXPECT_EQ(call.Code(), "0x00000000");
  EXPECT_EQ(ShownValue(call.result), "VT_DISPATCH object");
}

TEST_F(ClientObject, ClientOutlivesAnInitInWhichItsHostReleasesIt) {
  services_->Answer("GetUsid", [this](BStr*) { ReleaseClient(); });
  IQvClientServiceRaw* raw = raw_.get();
  EXPECT_EQ(raw->Init(provider_.get()), S_OK);
}

TEST_F(ClientObject, ServicesOutliveTheQueryInWhichTheirHostReplacesThem) {
  MakeReady();
  const SpeakingServicesPtr others(new SpeakingServices(&log_));
  services_->OnQuery([&] {
    provider_->Provide(others->Unknown());
    EXPECT_EQ(raw_->Init(provider_.get()), S_OK);
    services_.reset();
    EXPECT_EQ(SpeakingServices::Live(), 2) << "the services are gone in the middle of their answer";
  });
  Model();
}

// Services that know the client, but hold no reference to it, as that would be a circle.
TEST_F(ClientObject, ClientThatEndsMayBeCalledByItsServices) {
  MakeReady();
  IQvClientServiceRaw* const raw = raw_.get();
  const SpeakingServicesPtr others(new SpeakingServices(&log_));
  provider_->Provide(others->Unknown());
  SpeakingServices* const services = services_.get();
  services->OnEnd([&] {
    EXPECT_EQ(raw->Init(provider_.get()), S_OK);
    EXPECT_EQ(services->References(), 0U) << "released once more while they go";
  });
  services_.reset();
  ReleaseClient();
  EXPECT_EQ(SpeakingServices::Live(), 1);
  EXPECT_EQ(others->References(), 2U);
}

}  // namespace
}  // namespace qv
