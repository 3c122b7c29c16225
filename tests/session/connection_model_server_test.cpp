// What SetServer, SetClientServices and the proxy leave behind, and what the model's end does.
#include <gtest/gtest.h>

#include "fixtures/counting_object.h"
#include "format/formater_factory.h"
#include "qvscriptwells/create_objects.h"
#include "session/model_test.h"

namespace qv {
namespace {

constexpr char kNoScheme[] =
    "EQvException 0x00000000 Cannot parse url, expecting 'http://' after protocol name.";

class ModelServer : public testing::Test {
 protected:
  void SetUp() override { EnsureFormaters(); }

  // Proxy and port after this proxy text.
  std::string ProxyOf(const WideString& proxy) {
    model_.SetServer(u"http://srv", proxy);
    return Shown(model_.Proxy()) + " " + std::to_string(model_.ProxyPort());
  }

  ConnectionModelImpl model_;
};

TEST_F(ModelServer, NewModelHasTheseValues) {
  EXPECT_EQ(model_.ServiceUrl().port, -1);
  EXPECT_EQ(Shown(model_.ServiceUrl().url), "");
  EXPECT_TRUE(model_.HostUrl().IsNull());
  EXPECT_TRUE(model_.ContextHandle().IsNull());
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  EXPECT_TRUE(model_.UploadUrl().IsNull());
  EXPECT_TRUE(model_.Proxy().IsNull());
  EXPECT_EQ(model_.ProxyPort(), 0);
  EXPECT_EQ(model_.State(), SessionState::kNew);
}

TEST_F(ModelServer, ServerNameIsFollowedByTheServicePaths) {
  model_.SetServer(u"http://srv:8080", u"");
  EXPECT_EQ(Shown(model_.HostUrl()), "http://srv:8080/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
  EXPECT_EQ(Shown(model_.UploadUrl()), "http://srv:8080/WebEditor/FileManagerUpload.aspx");
  EXPECT_EQ(Shown(model_.ServiceUrl().url), "http://srv:8080/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
  EXPECT_EQ(Shown(model_.ServiceUrl().protocol), "http");
  EXPECT_EQ(Shown(model_.ServiceUrl().host), "srv");
  EXPECT_EQ(model_.ServiceUrl().port, 8080);
  EXPECT_EQ(Shown(model_.ServiceUrl().path), "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
}

TEST_F(ModelServer, PortIs80WithoutAnother) {
  model_.SetServer(u"https://srv", u"");
  EXPECT_EQ(model_.ServiceUrl().port, 80);
  EXPECT_EQ(Shown(model_.ServiceUrl().protocol), "https");
}

TEST_F(ModelServer, ClosingSlashIsKept) {
  model_.SetServer(u"http://srv/", u"");
  EXPECT_EQ(Shown(model_.ServiceUrl().path), "//Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
  EXPECT_EQ(Shown(model_.UploadUrl()), "http://srv//WebEditor/FileManagerUpload.aspx");
}

TEST_F(ModelServer, NameWithoutSchemeIsRefused) {
  for (const char16_t* name : {u"srv", u"", u"srv:80", u"http:/srv"})
    EXPECT_EQ(Thrown([&] { model_.SetServer(name, u""); }), kNoScheme) << Shown(name);
  EXPECT_EQ(Thrown([&] { model_.SetServer(WideString(), WideString()); }), kNoScheme);
}

TEST_F(ModelServer, RefusedNameIsKeptAsHostUrlAndChangesNothingElse) {
  model_.SetServer(u"http://srv", u"proxy:1");
  EXPECT_EQ(Thrown([&] { model_.SetServer(u"bad", u"other:2"); }), kNoScheme);
  EXPECT_EQ(Shown(model_.HostUrl()), "bad/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
  EXPECT_EQ(Shown(model_.ServiceUrl().host), "srv");
  EXPECT_EQ(Shown(model_.ServiceUrl().url), "http://srv/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
  EXPECT_EQ(Shown(model_.UploadUrl()), "http://srv/WebEditor/FileManagerUpload.aspx");
  EXPECT_EQ(Shown(model_.Proxy()), "proxy");
  EXPECT_EQ(model_.ProxyPort(), 1);
}

TEST_F(ModelServer, EmptyServerNameGivesTheBarePathAsHostUrl) {
  Thrown([&] { model_.SetServer(u"", u""); });
  EXPECT_EQ(Shown(model_.HostUrl()), "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
}

TEST_F(ModelServer, SecondServerReplacesTheFirst) {
  model_.SetServer(u"http://one", u"p:1");
  model_.SetServer(u"http://two:2", u"");
  EXPECT_EQ(Shown(model_.ServiceUrl().host), "two");
  EXPECT_EQ(model_.ServiceUrl().port, 2);
  EXPECT_EQ(Shown(model_.UploadUrl()), "http://two:2/WebEditor/FileManagerUpload.aspx");
  EXPECT_EQ(Shown(model_.Proxy()), "");
}

TEST_F(ModelServer, ServerKeepsSessionAndState) {
  model_.SetUSID(u"u1");
  model_.SetServer(u"http://srv", u"");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelServer, EmptyHostUrlIsRefusedAndChangesNothing) {
  model_.SetServer(u"http://srv", u"");
  EXPECT_EQ(Thrown([this] { model_.SetHostUrl(u""); }), "EQvException 0x00000000 No available host adress");
  EXPECT_EQ(Thrown([this] { model_.SetHostUrl(WideString()); }),
            "EQvException 0x00000000 No available host adress");
  EXPECT_EQ(Shown(model_.HostUrl()), "http://srv/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx");
}

TEST_F(ModelServer, HostUrlIsStoredAndParsed) {
  model_.SetHostUrl(u"http://h:1/p?q");
  EXPECT_EQ(Shown(model_.HostUrl()), "http://h:1/p?q");
  EXPECT_EQ(Shown(model_.ServiceUrl().path), "/p?q");
}

TEST_F(ModelServer, ProxyTextIsSplitAtItsColons) {
  EXPECT_EQ(ProxyOf(u"host"), "host 80");
  EXPECT_EQ(ProxyOf(u"host:8080"), "host 8080");
  EXPECT_EQ(ProxyOf(u":8080"), ":8080 80");
  EXPECT_EQ(ProxyOf(u""), " 80");
  EXPECT_EQ(ProxyOf(u"host:"), "host 0");
  EXPECT_EQ(ProxyOf(u"host:abc"), "host 0");
  EXPECT_EQ(ProxyOf(u"host: 81x"), "host 81");
  EXPECT_EQ(ProxyOf(u"host:-1"), "host -1");
  EXPECT_EQ(ProxyOf(u"host:70000"), "host 70000");
  EXPECT_EQ(ProxyOf(u"host:1:2"), "host 1");
  EXPECT_EQ(ProxyOf(u"host::1"), "host 0");
  EXPECT_EQ(ProxyOf(u":"), ": 80");
  EXPECT_EQ(ProxyOf(u"@PROXY@"), "@PROXY@ 80");
}

TEST_F(ModelServer, NullProxyHasPort80) {
  model_.SetServer(u"http://srv", WideString());
  EXPECT_TRUE(model_.Proxy().IsEmpty());
  EXPECT_EQ(model_.ProxyPort(), 80);
}

TEST_F(ModelServer, ProxyArgumentsAreTextAndNumber) {
  model_.SetServer(u"http://srv", u"host:8080");
  NamedArguments map;
  model_.AddProxyArguments(map);
  ASSERT_EQ(map.size(), 2u);
  EXPECT_EQ(Shown(map[u"Proxy"].Text()), "host");
  EXPECT_EQ(map[u"ProxyPort"].Tag(), VT_INT);
  EXPECT_EQ(map[u"ProxyPort"].Data().intVal, 8080);
}

TEST_F(ModelServer, NoProxyAddsNoArguments) {
  NamedArguments map;
  model_.AddProxyArguments(map);
  EXPECT_TRUE(map.empty());
  model_.SetServer(u"http://srv", u"");
  model_.AddProxyArguments(map);
  EXPECT_TRUE(map.empty());
}

TEST_F(ModelServer, ProxyArgumentsLeaveEarlierValues) {
  model_.SetServer(u"http://srv", u"host:8080");
  NamedArguments map{{u"Proxy", Variant::FromString(u"first")}};
  model_.AddProxyArguments(map);
  EXPECT_EQ(Shown(map[u"Proxy"].Text()), "first");
}

TEST_F(ModelServer, AdoptedSessionChangesHandleAndState) {
  FakeHttp http;
  model_.SetUSID(u"u1");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  model_.SetUSID(u"");
  EXPECT_EQ(Shown(model_.ContextHandle()), "");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  model_.SetUSID(WideString());
  EXPECT_TRUE(model_.ContextHandle().IsNull());
  EXPECT_TRUE(http.Calls().empty());
}

// Host services.

class ModelServices : public ModelServer {
 protected:
  void TearDown() override {
    model_.SetClientServices(nullptr);
    EXPECT_EQ(FakeHost::Live(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
  }
};

TEST_F(ModelServices, AreHeldOnceAndNullLetsThemGo) {
  FakeHostPtr host(new FakeHost);
  model_.SetClientServices(host->Unknown());
  EXPECT_EQ(host->References(), 2u);
  model_.SetClientServices(host->Unknown());
  EXPECT_EQ(host->References(), 2u);
  model_.SetClientServices(nullptr);
  EXPECT_EQ(host->References(), 1u);
}

TEST_F(ModelServices, OthersReplaceThem) {
  FakeHostPtr first(new FakeHost);
  FakeHostPtr second(new FakeHost);
  model_.SetClientServices(first->Unknown());
  model_.SetClientServices(second->Unknown());
  EXPECT_EQ(first->References(), 1u);
  EXPECT_EQ(second->References(), 2u);
}

TEST_F(ModelServices, ObjectWithoutTheInterfaceClearsThem) {
  FakeHostPtr host(new FakeHost);
  model_.SetClientServices(host->Unknown());
  const CountingObjectPtr stranger(new CountingObject);
  EXPECT_EQ(Thrown([&] { model_.SetClientServices(stranger.get()); }), "nothing");
  EXPECT_EQ(host->References(), 1u);
  EXPECT_EQ(stranger->References(), 1u);
}

TEST_F(ModelServices, OtherFailureOfTheQueryIsRaised) {
  FakeHostPtr host(new FakeHost);
  host->FailQuery(E_UNEXPECTED);
  EXPECT_EQ(Thrown([&] { model_.SetClientServices(host->Unknown()); }), "_com_error 0x8000FFFF <null>");
  EXPECT_EQ(host->References(), 1u);
}

TEST_F(ModelServices, AreAskedNothingWhenTheyAreSet) {
  FakeHostPtr host(new FakeHost);
  model_.SetClientServices(host->Unknown());
  EXPECT_TRUE(host->Calls().empty());
}

// The end of a model.

TEST_F(ModelServer, EndLetsTheServicesGoAndSendsNothing) {
  FakeHttp http;
  FakeHostPtr host(new FakeHost);
  {
    ConnectionModelImpl model;
    model.SetServer(u"http://srv", u"");
    model.SetClientServices(host->Unknown());
    model.SetUSID(u"u1");
  }
  EXPECT_EQ(host->References(), 1u);
  EXPECT_TRUE(host->Calls().empty());
  EXPECT_TRUE(http.Calls().empty());
}

TEST_F(ModelServer, EndEmptiesTheFormatersAfterTheServicesWent) {
  bool hadFormaters = false;
  {
    ConnectionModelImpl model;
    FakeHostPtr host(new FakeHost);
    host->OnLastRelease([&] { hadFormaters = FormaterFactory::Instance()->GetFormater(u"int") != nullptr; });
    model.SetClientServices(host->Unknown());
    host.reset();
    ASSERT_NE(FormaterFactory::Instance()->GetFormater(u"int"), nullptr);
  }
  EXPECT_TRUE(hadFormaters);
  EXPECT_EQ(FormaterFactory::Instance()->GetFormater(u"int"), nullptr);
}

TEST_F(ModelServer, EndOfTwoModelsInARowIsHarmless) {
  { ConnectionModelImpl first; }
  { ConnectionModelImpl second; }
  EXPECT_EQ(FormaterFactory::Instance()->GetFormater(u"string"), nullptr);
}

// Formaters are registered once per process, so the end of one model leaves the later ones without.
TEST_F(ModelServer, LaterModelFindsNoFormatersAndRefusesParameters) {
  FakeHttp http;
  {
    ConnectionModelImpl earlier;
    earlier.SetServer(u"http://srv", u"");
  }
  ConnectionModelImpl later;
  later.SetServer(u"http://srv", u"");
  later.SetUSID(u"u1");
  const IParametersPtr list = CreateParameters();
  list->Add(u"k", Variant::FromInt(1), nullptr);
  EXPECT_EQ(Thrown([&] { later.Execute(u"VBScript", u"1", list.get()); }),
            "EQvException 0x00000000 Cannot create the xml document.");
  EXPECT_TRUE(http.Calls().empty());
}

TEST_F(ModelServer, LaterModelFindsNoFormatersAndReadsEmptyValues) {
  FakeHttp http;
  {
    ConnectionModelImpl earlier;
    earlier.SetServer(u"http://srv", u"");
  }
  ConnectionModelImpl later;
  later.SetServer(u"http://srv", u"");
  later.SetUSID(u"u1");
  http.Answer(kScriptRan);
  EXPECT_EQ(later.Execute(u"VBScript", u"1", nullptr).Tag(), VT_EMPTY);
}

}  // namespace
}  // namespace qv
