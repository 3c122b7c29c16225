// Durations and URLs as parameters of a request.
#include <gtest/gtest.h>

#include <string>

#include "fixtures/counting_object.h"
#include "fixtures/fake_duration.h"
#include "fixtures/fake_http.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "format/factory_fixture.h"
#include "qvscriptwells/create_objects.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "soap/soap_call.h"

namespace qv {
namespace {

constexpr char kRefused[] = "EQvException 0x00000000 Cannot create the xml document.";
constexpr char16_t kDone[] =
    u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"xsd:int\">1</r></ExecuteResponse></soap:Body>"
    u"</soap:Envelope>";

class DurationOnWire : public FactoryFixture {
 protected:
  void SetUp() override {
    map_ = {{u"ContextHandle", Variant::FromString(u"u1")},
            {u"ScriptLanguage", Variant::FromString(u"VBScript")},
            {u"Script", Variant::FromString(u"a<b")}};
  }
  void TearDown() override {
    map_.clear();
    EXPECT_EQ(http_.LiveObjects(), 0);
    EXPECT_EQ(FakeDuration::Live(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
  }

  void Run() { CSOAPCall().Run(CQvUrl(u"http://srv/a"), u"Execute", u"", map_); }
  std::string Sent(IUnknown* parameters) {
    map_[u"parameters"] = Variant::FromObject(parameters);
    http_.Answer(kDone);
    Run();
    map_.erase(u"parameters");
    return http_.Bodies().back();
  }
  // The request for one parameter "k" that holds this object.
  std::string SentObject(IUnknown* object) {
    const IParametersPtr list = CreateParameters();
    EXPECT_EQ(list->Add(u"k", Variant::FromObject(object), nullptr), S_OK);
    return Sent(list.get());
  }
  // The same from a list that gives the type's name itself.
  std::string SentAs(const Variant& value, const WideString& typeName) {
    const FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", value, typeName);
    return Sent(list.get());
  }
  // Refused before the component is even made.
  void ExpectListRefused(IUnknown* list) {
    map_[u"parameters"] = Variant::FromObject(list);
    EXPECT_EQ(Thrown([this] { Run(); }), kRefused);
    EXPECT_TRUE(http_.Calls().empty());
    map_.erase(u"parameters");
  }
  void ExpectRefused(IUnknown* object) {
    const IParametersPtr list = CreateParameters();
    EXPECT_EQ(list->Add(u"before", Variant::FromInt(1), nullptr), S_OK);
    EXPECT_EQ(list->Add(u"bad", Variant::FromObject(object), nullptr), S_OK);
    ExpectListRefused(list.get());
  }
  void ExpectRefusedAs(const Variant& value, const WideString& typeName) {
    const FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", value, typeName);
    ExpectListRefused(list.get());
  }

  FakeLog log_;
  FakeHttp http_;
  NamedArguments map_;
};

std::string Single(const std::string& type, const std::string& content) {
  return RequestWith(ParameterArray("1", ParameterElement("k", type, content)));
}

TEST_F(DurationOnWire, IsWrittenAsItsText) {
  for (const char16_t* text : {u"P1Y2M3DT4H5M6.5S", u"-P1D", u"PT90S", u"P0", u"-P0", u"P32767Y", u"PT0.5S"})
    EXPECT_EQ(SentObject(CreateDuration(text).get()), Single("xsd:duration", Shown(text)));
}

TEST_F(DurationOnWire, WholeElementStandsLikeThis) {
  EXPECT_EQ(SentObject(CreateDuration(u"P1DT2H").get()),
            RequestWith("<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
                        "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" "
                        "ns1:arrayType=\"ns2:Parameter[1]\">"
                        "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                        "<Name xsi:type=\"xsd:string\">k</Name>"
                        "<Value xsi:type=\"xsd:duration\">P1DT2H</Value>"
                        "</Parameter>"
                        "</parameters>"));
}

TEST_F(DurationOnWire, SecondsLoseDigits) {
  const IDurationPtr duration = CreateDuration();
  EXPECT_EQ(duration->put_Sec(12345678.9), S_OK);
  EXPECT_EQ(SentObject(duration.get()), Single("xsd:duration", "PT1.23457e+07S"));
  double seconds = 0;
  EXPECT_EQ(duration->get_Sec(&seconds), S_OK);
  EXPECT_EQ(seconds, 12345678.9);
}

TEST_F(DurationOnWire, IsWrittenAsItStandsWhenTheRequestIsMade) {
  const IDurationPtr duration = CreateDuration(u"P1D");
  const IParametersPtr list = CreateParameters();
  EXPECT_EQ(list->Add(u"k", Variant::FromObject(duration.get()), nullptr), S_OK);
  EXPECT_EQ(duration->put_Negative(VARIANT_TRUE), S_OK);
  EXPECT_EQ(duration->put_Hour(3), S_OK);
  EXPECT_EQ(Sent(list.get()), Single("xsd:duration", "-P1DT3H"));
  EXPECT_EQ(duration->put_Day(2), S_OK);
  EXPECT_EQ(Sent(list.get()), Single("xsd:duration", "-P2DT3H"));
}

TEST_F(DurationOnWire, StandsAmongOtherParameters) {
  const IParametersPtr list = CreateParameters();
  EXPECT_EQ(list->Add(u"a", Variant::FromInt(1), nullptr), S_OK);
  EXPECT_EQ(list->Add(u"b", Variant::FromObject(CreateDuration(u"P1D").get()), nullptr), S_OK);
  EXPECT_EQ(list->Add(u"c", Variant::FromObject(CreateDuration(u"-P2D").get()), nullptr), S_OK);
  EXPECT_EQ(Sent(list.get()),
            RequestWith(ParameterArray("3", ParameterElement("a", "xsd:int", "1") +
                                                ParameterElement("b", "xsd:duration", "P1D") +
                                                ParameterElement("c", "xsd:duration", "-P2D"))));
}

TEST_F(DurationOnWire, TextOfAForeignDurationIsEscapedOnce) {
  const FakeDurationPtr foreign(new FakeDuration(u"<&\"'>\u00E9"));
  EXPECT_EQ(SentObject(foreign.get()), Single("xsd:duration", "&lt;&amp;&quot;&apos;&gt;&#233;"));
  EXPECT_EQ(foreign->References(), 1u);
}

TEST_F(DurationOnWire, NullTextOfAForeignDurationKeepsBothTags) {
  EXPECT_EQ(SentObject(FakeDurationPtr(new FakeDuration(WideString())).get()), Single("xsd:duration", ""));
}

TEST_F(DurationOnWire, TypeNameGoesOutAsGivenWhateverItsCase) {
  const Variant value = Variant::FromObject(CreateDuration(u"P1D").get());
  EXPECT_EQ(SentAs(value, u"dURATION"), Single("xsd:dURATION", "P1D"));
}

TEST_F(DurationOnWire, ValueThatIsNoDurationIsRefused) {
  ExpectRefusedAs(Variant::FromString(u"P1D"), u"duration");
  ExpectRefusedAs(Variant(), u"duration");
  ExpectRefusedAs(Variant::FromObject(nullptr), u"duration");
  ExpectRefusedAs(Variant::FromObject(CreateUrl().get()), u"duration");
  ExpectRefusedAs(Variant::FromObject(CountingObjectPtr(new CountingObject).get()), u"duration");
}

TEST_F(DurationOnWire, DurationWithoutATextIsRefused) {
  const FakeDurationPtr foreign(new FakeDuration(u"P1D"));
  foreign->AnswerRaw(E_NOINTERFACE);
  ExpectRefused(foreign.get());
  foreign->AnswerRaw(E_OUTOFMEMORY);
  ExpectRefused(foreign.get());
  foreign->AnswerRaw(S_OK);
  foreign->FailGetText(E_FAIL);
  ExpectRefused(foreign.get());
  EXPECT_EQ(foreign->References(), 1u);
}

TEST_F(DurationOnWire, UrlIsRefused) {
  const IUrlPtr url = CreateUrl();
  ExpectRefused(url.get());
  EXPECT_EQ(url->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(url->put_UrlCaption(u"caption"), S_OK);
  ExpectRefused(url.get());
}

TEST_F(DurationOnWire, UrlNamedSoByAForeignListIsEmpty) {
  const IUrlPtr url = CreateUrl();
  EXPECT_EQ(url->put_Url(u"scheme://srv/a"), S_OK);
  EXPECT_EQ(SentAs(Variant::FromObject(url.get()), u"url"), Single("xsd:url", ""));
}

}  // namespace
}  // namespace qv
