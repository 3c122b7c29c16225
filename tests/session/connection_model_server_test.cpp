// What SetServer, SetClientServices and the proxy do to a model, and what its end does.
#include "fixtures/counting_object.h"
#include "format/formater_factory.h"
#include "qvscriptwells/create_objects.h"
#include "session/model_test.h"

namespace qv {
namespace {

constexpr char kServicePath[] = "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx";
constexpr char kUploadPath[] = "/WebEditor/FileManagerUpload.aspx";

class ModelServer : public testing::Test {
 protected:
  void SetUp() override { FillFormaters(); }

  std::string ServerThrows(const WideString& name, const WideString& proxy = u"") {
    return Thrown([&] { model_.SetServer(name, proxy); });
  }
  void ExpectProxy(const std::string& proxy, int port) const {
    EXPECT_EQ(Shown(model_.Proxy()), proxy);
    EXPECT_EQ(model_.ProxyPort(), port);
  }
  // All URLs of a server with this name, and the parts of its service URL.
  void ExpectServer(const std::string& name, const std::string& protocol, const std::string& host,
                    int port) const {
    EXPECT_EQ(Shown(model_.HostUrl()), name + kServicePath);
    EXPECT_EQ(Shown(model_.UploadUrl()), name + kUploadPath);
    EXPECT_EQ(Shown(model_.ServiceUrl().url), name + kServicePath);
    EXPECT_EQ(Shown(model_.ServiceUrl().protocol), protocol);
    EXPECT_EQ(Shown(model_.ServiceUrl().host), host);
    EXPECT_EQ(model_.ServiceUrl().port, port);
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
  ExpectProxy("<null>", 0);
  EXPECT_EQ(model_.State(), SessionState::kNew);
}

TEST_F(ModelServer, ServerNameIsFollowedByTheServicePaths) {
  const struct {
    const char* name;
    const char* protocol;
    const char* host;
    int port;
    const char* path;
  } rows[] = {{"http://srv:8080", "http", "srv", 8080, ""},
              {"https://srv", "https", "srv", 80, ""},
              {"http://two/", "http", "two", 80, "/"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    model_.SetServer(FromUtf8(row.name), u"");
    ExpectServer(row.name, row.protocol, row.host, row.port);
    EXPECT_EQ(Shown(model_.ServiceUrl().path), std::string(row.path) + kServicePath);
  }
}

TEST_F(ModelServer, NameWithoutSchemeIsRejected) {
  for (const char16_t* name : {u"srv", u"", u"srv:80", u"http:/srv"}) {
    EXPECT_EQ(ServerThrows(name), kNoUrl) << Shown(name);
    EXPECT_EQ(Shown(model_.HostUrl()), Shown(name) + kServicePath);
  }
  EXPECT_EQ(ServerThrows(WideString(), WideString()), kNoUrl);
}

TEST_F(ModelServer, RejectedNameIsKeptAsHostUrlAndChangesNothingElse) {
  model_.SetServer(u"http://srv", u"proxy:1");
  EXPECT_EQ(ServerThrows(u"bad", u"other:2"), kNoUrl);
  EXPECT_EQ(Shown(model_.HostUrl()), std::string("bad") + kServicePath);
  EXPECT_EQ(Shown(model_.ServiceUrl().host), "srv");
  EXPECT_EQ(Shown(model_.ServiceUrl().url), std::string("http://srv") + kServicePath);
  EXPECT_EQ(Shown(model_.UploadUrl()), std::string("http://srv") + kUploadPath);
  ExpectProxy("proxy", 1);
}

TEST_F(ModelServer, SecondServerReplacesTheFirstAndKeepsTheSession) {
  model_.SetServer(u"http://one", u"p:1");
  model_.SetUSID(u"u1");
  model_.SetServer(u"http://two:2", u"");
  ExpectServer("http://two:2", "http", "two", 2);
  EXPECT_EQ(Shown(model_.Proxy()), "");
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(model_.State(), SessionState::kOpen);
}

TEST_F(ModelServer, HostUrlIsStoredAndParsedUnlessItIsEmpty) {
  model_.SetHostUrl(u"http://h:1/p?q");
  for (const WideString& empty : {WideString(u""), WideString()})
    EXPECT_EQ(Thrown([&] { model_.SetHostUrl(empty); }), Refused("No available host adress"));
  EXPECT_EQ(Shown(model_.HostUrl()), "http://h:1/p?q");
  EXPECT_EQ(Shown(model_.ServiceUrl().path), "/p?q");
}

TEST_F(ModelServer, ProxyTextIsSplitAtItsColons) {
  const struct {
    WideString text;
    const char* name;
    int port;
  } rows[] = {{u"host", "host", 80},
              {u"host:8080", "host", 8080},
              {u":8080", ":8080", 80},
              {u"", "", 80},
              {WideString(), "<null>", 80},
              {u"host:", "host", 0},
              {u"host:abc", "host", 0},
              {u"host: 81x", "host", 81},
              {u"host:-1", "host", -1},
              {u"host:70000", "host", 70000},
              {u"host:1:2", "host", 1},
              {u"host::1", "host", 0},
              {u":", ":", 80},
              {u"@PROXY@", "@PROXY@", 80}};
  for (const auto& row : rows) {
    SCOPED_TRACE(Shown(row.text));
    model_.SetServer(u"http://srv", row.text);
    ExpectProxy(row.name, row.port);
  }
}

TEST_F(ModelServer, ProxyArgumentsAreTextAndNumberAndLeaveEarlierValues) {
  NamedArguments map;
  model_.AddProxyArguments(map);
  EXPECT_TRUE(map.empty());
  model_.SetServer(u"http://srv", u"");
  model_.AddProxyArguments(map);
  EXPECT_TRUE(map.empty());
  model_.SetServer(u"http://srv", u"host:8080");
  model_.AddProxyArguments(map);
  ASSERT_EQ(map.size(), 2U);
  EXPECT_EQ(Shown(map[u"Proxy"].Text()), "host");
  EXPECT_EQ(map[u"ProxyPort"].Tag(), VT_INT);
  EXPECT_EQ(map[u"ProxyPort"].Data().intVal, 8080);
  model_.SetServer(u"http://srv", u"second:1");
  model_.AddProxyArguments(map);
  EXPECT_EQ(Shown(map[u"Proxy"].Text()), "host");
}

TEST_F(ModelServer, AdoptedSessionChangesHandleAndState) {
  FakeHttp http;
  for (const WideString& id : {WideString(u"u1"), WideString(u""), WideString()}) {
    model_.SetUSID(id);
    EXPECT_EQ(Shown(model_.ContextHandle()), Shown(id));
    EXPECT_EQ(model_.State(), SessionState::kOpen);
  }
  EXPECT_TRUE(http.Calls().empty());
}

// Host services.

class ModelServices : public ModelServer {
 protected:
  void TearDown() override {
    model_.SetClientServices(nullptr);
    host_.reset();
    EXPECT_EQ(FakeHost::Live(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
  }

  FakeHostPtr host_{new FakeHost};
};

TEST_F(ModelServices, AreHeldOnceAndAskedNothingAndNullReleasesThem) {
  for (int i = 0; i < 2; ++i) {
    model_.SetClientServices(host_->Unknown());
    EXPECT_EQ(host_->References(), 2U);
  }
  model_.SetClientServices(nullptr);
  EXPECT_EQ(host_->References(), 1U);
  EXPECT_TRUE(host_->Calls().empty());
}

TEST_F(ModelServices, OthersReplaceThem) {
  const FakeHostPtr second(new FakeHost);
  model_.SetClientServices(host_->Unknown());
  model_.SetClientServices(second->Unknown());
  EXPECT_EQ(host_->References(), 1U);
  EXPECT_EQ(second->References(), 2U);
  model_.SetClientServices(nullptr);
}

TEST_F(ModelServices, ObjectWithoutTheInterfaceClearsThem) {
  model_.SetClientServices(host_->Unknown());
  const CountingObjectPtr stranger(new CountingObject);
  EXPECT_EQ(Thrown([&] { model_.SetClientServices(stranger.get()); }), "nothing");
  EXPECT_EQ(host_->References(), 1U);
  EXPECT_EQ(stranger->References(), 1U);
}

TEST_F(ModelServices, OtherFailureOfTheQueryIsThrown) {
  host_->FailQuery(E_UNEXPECTED);
  EXPECT_EQ(Thrown([&] { model_.SetClientServices(host_->Unknown()); }), "_com_error 0x8000FFFF <null>");
  EXPECT_EQ(host_->References(), 1U);
}

// The end of a model.

TEST_F(ModelServices, EndReleasesTheServicesAndSendsNothing) {
  FakeHttp http;
  {
    ConnectionModelImpl model;
    model.SetServer(u"http://srv", u"");
    model.SetClientServices(host_->Unknown());
    model.SetUSID(u"u1");
  }
  EXPECT_EQ(host_->References(), 1U);
  EXPECT_TRUE(host_->Calls().empty());
  EXPECT_TRUE(http.Calls().empty());
}

TEST_F(ModelServices, EndEmptiesTheFormatersAfterTheServicesAreReleased) {
  const auto hasFormaters = [] { return FormaterFactory::Instance()->GetFormater(u"int") != nullptr; };
  bool hadFormaters = false;
  {
    ConnectionModelImpl model;
    host_->OnLastRelease([&] { hadFormaters = hasFormaters(); });
    model.SetClientServices(host_->Unknown());
    host_.reset();
    ASSERT_TRUE(hasFormaters());
  }
  EXPECT_TRUE(hadFormaters);
  EXPECT_FALSE(hasFormaters());
  { ConnectionModelImpl second; }  // a second end is harmless
  EXPECT_FALSE(hasFormaters());
}

// Formaters are registered once per process, so the end of one model leaves the later ones without.
TEST_F(ModelServer, LaterModelFindsNoFormatersSoItReadsEmptyValuesAndRefusesParameters) {
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
  EXPECT_EQ(Thrown([&] { later.Execute(u"VBScript", u"1", list.get()); }), kNoDocument);
  EXPECT_TRUE(http.Calls().empty());
  http.Answer(kScriptDone);
  EXPECT_EQ(later.Execute(u"VBScript", u"1", nullptr).Tag(), VT_EMPTY);
}

}  // namespace
}  // namespace qv
