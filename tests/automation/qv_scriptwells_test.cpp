// The client object as hosts meet it: typed, and by name and id.
#include <gtest/gtest.h>

#include "automation/late_call.h"
#include "automation/waiting_record.h"
#include "com/module.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/speaking_host.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"
#include "session/session_answers.h"

namespace qv {
namespace {

constexpr char kNoUrlWords[] = "Cannot parse url, expecting 'http://' after protocol name.";

// The words that wait, whatever else the record says.
std::string WaitingWords() {
  ErrorInfo info;
  return GetErrorInfo(&info) ? Shown(info.description) : "no record";
}

class ClientObject : public testing::Test {
 protected:
  ClientObject()
      : services_(new SpeakingServices(&log_)),
        provider_(new SpeakingProvider(&log_, services_->Unknown())),
        client_(CreateQvScriptwells()) {
    EnsureFormaters();
    services_->Answer("GetUsid", Nulls());
    raw_ = As<IQvClientServiceRaw>(client_);
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
    IConnectionModel* model = nullptr;
    EXPECT_EQ(client_->ConnectionModel(&model), S_OK);
    return IConnectionModelPtr(model, false);
  }
  void ExpectFailure(HRESULT code, std::uint32_t expected, const std::string& words) {
    EXPECT_EQ(static_cast<std::uint32_t>(code), expected);
    EXPECT_EQ(WaitingWords(), words);
  }
  // The same through the table; source, help file and context are the object's own business.
  void ExpectLateFailure(LateCall call, const char* code, const char* words, const char* result) {
    EXPECT_EQ(call.Code(), code);
    EXPECT_EQ(ShownCode(call.failure.scode), code);
    EXPECT_EQ(Shown(call.failure.bstrDescription), words);
    EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
    EXPECT_EQ(ShownValue(call.result), result);
    EXPECT_EQ(WaitingWords(), "no record");
  }

  HostLog log_;
  SpeakingServicesPtr services_;
  SpeakingProviderPtr provider_;
  IQvScriptwellsPtr client_;
  IQvClientServiceRawPtr raw_;
};

TEST_F(ClientObject, WholeSessionRuns) {
  FakeHttp http;
  MakeReady();
  const IConnectionModelPtr model = Model();
  IConnectionString* made = nullptr;
  services_->Answer("GetReplicaId", Replaces(u"r"));
  services_->Answer("GetUserName", Replaces(u"joe"));
  ASSERT_EQ(client_->ConnectionString(&made), S_OK);
  const IConnectionStringPtr credentials(made, false);
  WideString text;
  ASSERT_EQ(credentials->ToString(&text), S_OK);
  EXPECT_EQ(Shown(text), "DbReplicationId=r;Username=joe;Password=;");
  http.Answer(kSessionOpened);
  http.Answer(kScriptRan);
  http.Answer(kSessionClosed);
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
  LateCall init(raw_.get(), IdOf(raw_.get(), u"init"));
  EXPECT_EQ(init.With({Variant::FromObject(provider_.get())}).Code(), "0x00000000");
  EXPECT_EQ(ShownValue(init.result), "VT_EMPTY");
  LateCall server(client_.get(), IdOf(client_.get(), u"servername"), DISPATCH_PROPERTYPUT);
  EXPECT_EQ(server.With({Text(u"http://srv")}).Code(), "0x00000000");
  LateCall proxy(client_.get(), IdOf(client_.get(), u"proxy"), DISPATCH_PROPERTYPUT);
  EXPECT_EQ(proxy.With({Text(u"@PROXY@")}).Code(), "0x00000000");
  LateCall read(client_.get(), IdOf(client_.get(), u"Proxy"), DISPATCH_PROPERTYGET);
  EXPECT_EQ(read.Code(), "0x00000000");
  EXPECT_EQ(ShownValue(read.result), "VT_BSTR ");
  LateCall first(client_.get(), IdOf(client_.get(), u"CONNECTIONMODEL"), DISPATCH_PROPERTYGET);
  EXPECT_EQ(first.Code(), "0x00000000");
  LateCall second(client_.get(), 1);
  EXPECT_EQ(second.Code(), "0x00000000");
  IDispatch* model = DispatchOf(first.result);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(DispatchOf(second.result), model);
  LateCall list(client_.get(), IdOf(client_.get(), u"Parameters"));
  EXPECT_EQ(list.Code(), "0x00000000");

  http.Answer(kSessionOpened);
  http.Answer(kScriptRan);
  http.Answer(kSessionClosed);
  LateCall open(model, IdOf(model, u"CreateUserSession"));
  EXPECT_EQ(open.With({Text(u"Username=joe;")}).Code(), "0x00000000");
  LateCall execute(model, IdOf(model, u"Execute"));
  EXPECT_EQ(execute.With({Text(u"VBScript"), Text(u"1"), list.result}).Code(), "0x00000000");
  EXPECT_EQ(ShownValue(execute.result), "VT_BSTR done");
  EXPECT_EQ(LateCall(model, IdOf(model, u"CloseUserSession")).Code(), "0x00000000");
  EXPECT_EQ(log_, (HostLog{"GetService(QvClientServices)", "GetUsid", "GetUsid", "GetUsid", "SetUsid",
                           "SetUserName", "SetDatabaseIds", "ClearSession"}));
  EXPECT_EQ(http.LiveObjects(), 0);
}

TEST_F(ClientObject, EverySuccessClearsTheStaleRecord) {
  EXPECT_EQ(raw_->Init(provider_.get()), S_OK);
  EXPECT_EQ(WaitingWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(client_->put_ServerName(u"http://srv"), S_OK);
  EXPECT_EQ(WaitingWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(client_->put_Proxy(u""), S_OK);
  EXPECT_EQ(WaitingWords(), "no record");
  LeaveStaleRecord();
  WideString text;
  EXPECT_EQ(client_->get_ServerName(&text), S_OK);
  EXPECT_EQ(WaitingWords(), "no record");
  EXPECT_EQ(Shown(text), "http://srv");
  LeaveStaleRecord();
  EXPECT_EQ(client_->get_Proxy(&text), S_OK);
  EXPECT_EQ(WaitingWords(), "no record");
  EXPECT_EQ(Shown(text), "");
  LeaveStaleRecord();
  Model();
  EXPECT_EQ(WaitingWords(), "no record");
}

TEST_F(ClientObject, EachValueIsANewObjectWithOneReference) {
  IUrl* url = nullptr;
  EXPECT_EQ(client_->Url(&url), S_OK);
  EXPECT_EQ(IUrlPtr(url, false)->AddRef(), 2u);
  url->Release();
}

TEST_F(ClientObject, ValuesComeByIdInTheirOrder) {
  MakeReady();
  struct Row {
    DISPID id;
    Guid iid;
  };
  const Row rows[] = {{1, IConnectionModel::kIid},  {2, IUrl::kIid},          {3, IDuration::kIid},
                      {4, IConnectionString::kIid}, {5, IAttachedFile::kIid}, {6, IParameters::kIid}};
  for (const Row& row : rows) {
    LateCall once(client_.get(), row.id);
    LateCall again(client_.get(), row.id, DISPATCH_PROPERTYGET);
    EXPECT_EQ(once.Code(), "0x00000000");
    EXPECT_EQ(again.Code(), "0x00000000");
    ASSERT_NE(DispatchOf(once.result), nullptr);
    EXPECT_EQ(DispatchOf(once.result) == DispatchOf(again.result), row.id == 1);
    const IUnknownPtr face = As<IUnknown>(DispatchOf(once.result), row.iid);
    EXPECT_NE(face, nullptr) << row.id;
    EXPECT_TRUE(once.FailureUntouched());
  }
}

TEST_F(ClientObject, InitWithoutServicesIsANullReference) {
  const CountingObjectPtr stranger(new CountingObject);
  ExpectFailure(raw_->Init(nullptr), 0x80004003, "Unknown Error");
  ExpectFailure(raw_->Init(stranger.get()), 0x80004003, "Unknown Error");
  provider_->Provide(nullptr);
  ExpectFailure(raw_->Init(provider_.get()), 0x80004003, "Unknown Error");
  LateCall byId(raw_.get(), 1);
  byId.With({FromDispatch(nullptr)});
  ExpectLateFailure(byId, "0x80004003", "Unknown Error", "VT_EMPTY");
}

TEST_F(ClientObject, InitWithFailingProviderBringsItsCode) {
  provider_->FailQuery(E_ACCESSDENIED);
  ExpectFailure(raw_->Init(provider_.get()), 0x80070005, "Unknown Error");
}

TEST_F(ClientObject, ReadsBeforeInitAreNullReferences) {
  ASSERT_EQ(client_->put_ServerName(u"http://srv"), S_OK);
  int stranger = 0;
  IConnectionModel* model = reinterpret_cast<IConnectionModel*>(&stranger);
  ExpectFailure(client_->ConnectionModel(&model), 0x80004003, "Unknown Error");
  IConnectionString* credentials = reinterpret_cast<IConnectionString*>(&stranger);
  ExpectFailure(client_->ConnectionString(&credentials), 0x80004003, "Unknown Error");
  ExpectLateFailure(LateCall(client_.get(), 1), "0x80004003", "Unknown Error", "VT_DISPATCH null");
  ExpectLateFailure(LateCall(client_.get(), 4), "0x80004003", "Unknown Error", "VT_DISPATCH null");
}

TEST_F(ClientObject, BadServerNameBringsItsWords) {
  MakeReady();
  for (const char16_t* name : {u"srv", u""}) {
    ASSERT_EQ(client_->put_ServerName(name), S_OK);
    IConnectionModel* model = nullptr;
    ExpectFailure(client_->ConnectionModel(&model), 0x80020009, kNoUrlWords);
    EXPECT_EQ(model, nullptr);
    ExpectLateFailure(LateCall(client_.get(), 1), "0x80020009", kNoUrlWords, "VT_DISPATCH null");
  }
}

TEST_F(ClientObject, MissingPlacesAreRefused) {
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
  LateCall model(ready.get(), 1);
  EXPECT_EQ(model.Code(), "0x00000000");
  WideString text;
  EXPECT_EQ(ready->get_ServerName(&text), S_OK);
  EXPECT_EQ(Shown(text), "http://srv");
  EXPECT_EQ(ready->get_Proxy(&text), S_OK);
  EXPECT_EQ(Shown(text), "p:9");
  EXPECT_EQ(Thrown([] { CreateQvScriptwells(u"http://srv", u"", nullptr); }).substr(0, 21),
            "_com_error 0x80004003");
}

// Hosts that let go of the client while it asks them.

TEST_F(ClientObject, ClientOutlivesAReadInWhichItsHostReleasesIt) {
  MakeReady();
  services_->Answer("GetUsid", [this](BStr* text) {
    ReplaceString(text, u"u1");
    raw_.reset();
    client_.reset();
  });
  IQvScriptwells* client = client_.get();
  IConnectionModel* model = nullptr;
  EXPECT_EQ(client->ConnectionModel(&model), S_OK);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(IConnectionModelPtr(model, false)->SetUSID(u""), S_OK);
}

TEST_F(ClientObject, ClientOutlivesAnInvokeInWhichItsHostReleasesIt) {
  MakeReady();
  services_->Answer("GetReplicaId", [this](BStr*) {
    raw_.reset();
    client_.reset();
  });
  LateCall call(client_.get(), 4);
  EXPECT_EQ(call.Code(), "0x00000000");
  EXPECT_EQ(ShownValue(call.result), "VT_DISPATCH object");
}

TEST_F(ClientObject, ClientOutlivesAnInitInWhichItsHostReleasesIt) {
  services_->Answer("GetUsid", [this](BStr*) {
    raw_.reset();
    client_.reset();
  });
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
    EXPECT_EQ(services->References(), 0u) << "released once more while they go";
  });
  services_.reset();
  raw_.reset();
  client_.reset();
  EXPECT_EQ(SpeakingServices::Live(), 1);
  EXPECT_EQ(others->References(), 2u);
}

}  // namespace
}  // namespace qv
