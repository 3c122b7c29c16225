#include <gtest/gtest.h>

#include <limits>
#include <ostream>

#include "fixtures/counting_object.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/create_objects.h"
#include "script/execute_command.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "soap/soap_call.h"

namespace qv {
namespace {

constexpr char kRefused[] = "EQvException 0x00000000 Cannot create the xml document.";
constexpr char16_t kDone[] =
    u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"xsd:int\">1</r></ExecuteResponse></soap:Body>"
    u"</soap:Envelope>";

class ParametersOnWire : public testing::Test {
 protected:
  void SetUp() override {
    EnsureFormaters();
    map_ = {{u"ContextHandle", Variant::FromString(u"u1")},
            {u"ScriptLanguage", Variant::FromString(u"VBScript")},
            {u"Script", Variant::FromString(u"a<b")}};
  }
  void TearDown() override {
    map_.clear();
    EXPECT_EQ(http_.LiveObjects(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
  }

  void Run() { CSOAPCall().Run(CQvUrl(u"http://srv/a"), u"Execute", u"", map_); }
  // The request that goes out for this object under "parameters".
  std::string Sent(IUnknown* parameters) {
    map_[u"parameters"] = Variant::FromObject(parameters);
    http_.Answer(kDone);
    Run();
    return http_.Bodies().back();
  }
  // The request for one parameter of this key and value.
  std::string SentValue(const WideString& key, const Variant& value) {
    const IParametersPtr list = CreateParameters();
    EXPECT_EQ(list->Add(key, value, nullptr), S_OK);
    return Sent(list.get());
  }
  std::string SentFake(const Variant& value, const WideString& typeName) {
    const FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", value, typeName);
    return Sent(list.get());
  }
  // Refused with the guard's words before the component is even made.
  void ExpectRefused(const Variant& parameters) {
    map_[u"parameters"] = parameters;
    EXPECT_EQ(Thrown([this] { Run(); }), kRefused);
    EXPECT_TRUE(http_.Calls().empty());
  }
  void ExpectValueRefused(const Variant& value) {
    const IParametersPtr list = CreateParameters();
    EXPECT_EQ(list->Add(u"before", Variant::FromInt(1), nullptr), S_OK);
    EXPECT_EQ(list->Add(u"bad", value, nullptr), S_OK);
    ExpectRefused(Variant::FromObject(list.get()));
  }

  FakeLog log_;
  FakeHttp http_;
  NamedArguments map_;
};

std::string Single(const std::string& type, const std::string& content) {
  return RequestWith(ParameterArray("1", ParameterElement("k", type, content)));
}

TEST_F(ParametersOnWire, AbsentListIsTheNilForm) {
  http_.Answer(kDone);
  Run();
  EXPECT_EQ(http_.Bodies().back(), RequestWith(kNoParameters));
}

TEST_F(ParametersOnWire, EmptyListIsTheArrayFormWithCountZero) {
  EXPECT_EQ(Sent(CreateParameters().get()),
            RequestWith("<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
                        "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" "
                        "ns1:arrayType=\"ns2:Parameter[0]\"></parameters>"));
}

TEST_F(ParametersOnWire, OneStringParameterIsWrittenLikeThis) {
  EXPECT_EQ(SentValue(u"a", Variant::FromString(u"b")),
            RequestWith("<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
                        "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" "
                        "ns1:arrayType=\"ns2:Parameter[1]\">"
                        "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                        "<Name xsi:type=\"xsd:string\">a</Name>"
                        "<Value xsi:type=\"xsd:string\">b</Value>"
                        "</Parameter>"
                        "</parameters>"));
}

TEST_F(ParametersOnWire, DuplicateKeysAreBothSentInListOrder) {
  const IParametersPtr list = CreateParameters();
  list->Add(u"k", Variant::FromInt(2), nullptr);
  list->Add(u"k", Variant::FromString(u"one"), nullptr);
  EXPECT_EQ(Sent(list.get()),
            RequestWith(ParameterArray(
                "2", ParameterElement("k", "xsd:int", "2") + ParameterElement("k", "xsd:string", "one"))));
}

TEST_F(ParametersOnWire, CountOfManyIsDecimal) {
  const IParametersPtr list = CreateParameters();
  std::string elements;
  for (int i = 0; i < 12; ++i) {
    list->Add(u"k", Variant::FromBool(true), nullptr);
    elements += ParameterElement("k", "xsd:boolean", "1");
  }
  EXPECT_EQ(Sent(list.get()), RequestWith(ParameterArray("12", elements)));
}

TEST_F(ParametersOnWire, KeyIsEscapedOnce) {
  EXPECT_EQ(SentValue(u"<&\u00E9", Variant::FromInt(1)),
            RequestWith(ParameterArray("1", ParameterElement("&lt;&amp;&#233;", "xsd:int", "1"))));
}

TEST_F(ParametersOnWire, NullAndEmptyKeysKeepBothTags) {
  const std::string request = RequestWith(ParameterArray("1", ParameterElement("", "xsd:int", "1")));
  EXPECT_EQ(SentValue(WideString(), Variant::FromInt(1)), request);
  EXPECT_EQ(SentValue(u"", Variant::FromInt(1)), request);
}

TEST_F(ParametersOnWire, StringIsEscapedOnceAndEndsAtItsFirstNull) {
  EXPECT_EQ(SentValue(u"k", Variant::FromString(u"\"&'<>\u00E9")),
            Single("xsd:string", "&quot;&amp;&apos;&lt;&gt;&#233;"));
  EXPECT_EQ(SentValue(u"k", Variant::FromString(std::u16string_view(u"a\0b", 3))), Single("xsd:string", "a"));
}

TEST_F(ParametersOnWire, NullAndEmptyStringsKeepBothTags) {
  EXPECT_EQ(SentValue(u"k", Variant::FromString(WideString())), Single("xsd:string", ""));
  EXPECT_EQ(SentValue(u"k", Variant::FromString(u"")), Single("xsd:string", ""));
}

struct Scalar {
  const char* name;
  Variant value;
  const char* type;
  const char* content;
};
void PrintTo(const Scalar& row, std::ostream* out) {
  *out << row.name;
}

Variant LongUnderI4(std::int32_t value) {
  VariantData data;
  data.lVal = value;
  return Variant::FromRaw(VT_I4, data);
}

class ScalarOnWire : public ParametersOnWire, public testing::WithParamInterface<Scalar> {};

TEST_P(ScalarOnWire, IsWrittenLikeThis) {
  EXPECT_EQ(SentValue(u"k", GetParam().value), Single(GetParam().type, GetParam().content));
}

INSTANTIATE_TEST_SUITE_P(
    Values, ScalarOnWire,
    testing::Values(Scalar{"Byte", Variant::FromByte(-128), "xsd:byte", "-128"},
                    Scalar{"ByteUpper", Variant::FromByte(127), "xsd:byte", "127"},
                    Scalar{"Short", Variant::FromShort(-32768), "xsd:short", "-32768"},
                    Scalar{"Int", Variant::FromInt(std::numeric_limits<std::int32_t>::min()), "xsd:int",
                           "-2147483648"},
                    Scalar{"IntUnderI4", LongUnderI4(42), "xsd:int", "42"},
                    Scalar{"Long", Variant::FromLong(std::numeric_limits<std::int64_t>::max()), "xsd:long",
                           "9223372036854775807"},
                    Scalar{"True", Variant::FromBool(true), "xsd:boolean", "1"},
                    Scalar{"False", Variant::FromBool(false), "xsd:boolean", "0"},
                    Scalar{"Float", Variant::FromFloat(3.14159265F), "xsd:float", "3.14159"},
                    Scalar{"SmallFloat", Variant::FromFloat(1e-7F), "xsd:float", "1e-07"},
                    Scalar{"Double", Variant::FromDouble(0.1), "xsd:double", "0.1"},
                    Scalar{"DoubleLosesDigits", Variant::FromDouble(123456.789), "xsd:double", "123457"},
                    Scalar{"LargeDouble", Variant::FromDouble(1234567.0), "xsd:double", "1.23457e+06"},
                    Scalar{"ZeroDouble", Variant::FromDouble(0.0), "xsd:double", "0"},
                    Scalar{"NotANumber", Variant::FromDouble(std::numeric_limits<double>::quiet_NaN()),
                           "xsd:double", "nan"},
                    Scalar{"Infinity", Variant::FromDouble(-std::numeric_limits<double>::infinity()),
                           "xsd:double", "-inf"},
                    Scalar{"String", Variant::FromString(u"text"), "xsd:string", "text"}),
    [](const testing::TestParamInfo<Scalar>& row) { return std::string(row.param.name); });

// What a foreign list is asked, and when.

TEST_F(ParametersOnWire, ListIsAskedInThisOrder) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->Put(u"a", Variant::FromInt(1), u"int");
  list->Put(u"b", Variant::FromInt(2), u"int");
  EXPECT_EQ(Sent(list.get()), RequestWith(ParameterArray("2", ParameterElement("a", "xsd:int", "1") +
                                                                  ParameterElement("b", "xsd:int", "2"))));
  EXPECT_EQ(log_, (FakeLog{"Size", "Find(0)", "get_ParamValue", "get_ParamKey", "get_ParamTypeAsString",
                           "Find(1)", "get_ParamValue", "get_ParamKey", "get_ParamTypeAsString"}));
}

TEST_F(ParametersOnWire, NegativeSizeIsWrittenAndHasNoElements) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->SayNegativeSize(-1);
  EXPECT_EQ(Sent(list.get()), RequestWith(ParameterArray("-1", "")));
  EXPECT_EQ(log_, FakeLog{"Size"});
}

TEST_F(ParametersOnWire, TypeNameGoesOutAsGivenWhateverItsCase) {
  EXPECT_EQ(SentFake(Variant::FromInt(5), u"iNT"), Single("xsd:iNT", "5"));
  EXPECT_EQ(SentFake(Variant::FromInt(5), u"xsd:int"), Single("xsd:xsd:int", "5"));
}

TEST_F(ParametersOnWire, TypeNameInsideLanguageIsWrittenAsText) {
  EXPECT_EQ(SentFake(Variant::FromString(u"a<b"), u"lang"), Single("xsd:lang", "a&lt;b"));
}

TEST_F(ParametersOnWire, ReferencesToTheListAreGivenBack) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->Put(u"a", Variant::FromInt(1), u"int");
  Sent(list.get());
  map_.clear();
  EXPECT_EQ(list->References(), 1u);
}

// Refused.

TEST_F(ParametersOnWire, NullObjectIsRefused) {
  ExpectRefused(Variant::FromObject(nullptr));
}

TEST_F(ParametersOnWire, ValueThatIsNoObjectIsRefused) {
  ExpectRefused(Variant::FromInt(5));
}

TEST_F(ParametersOnWire, ObjectThatIsNoListIsRefused) {
  ExpectRefused(Variant::FromObject(CountingObjectPtr(new CountingObject).get()));
}

TEST_F(ParametersOnWire, ObjectWhoseQueryFailsIsRefused) {
  const CountingObjectPtr object(new CountingObject);
  object->FailQueries(E_OUTOFMEMORY);
  ExpectRefused(Variant::FromObject(object.get()));
}

TEST_F(ParametersOnWire, EmptyAndNullValuesAreRefused) {
  ExpectValueRefused(Variant());
  ExpectValueRefused(Variant::Null());
}

TEST_F(ParametersOnWire, UnsignedByteIsRefused) {
  VariantData data;
  data.bVal = 5;
  ExpectValueRefused(Variant::FromRaw(VT_UI1, data));
}

// The object says that it is a duration, but has no text.
TEST_F(ParametersOnWire, DurationWithoutTextIsRefused) {
  ExpectValueRefused(Variant::FromObject(CountingObjectPtr(new CountingObject({IID_IDuration})).get()));
}

TEST_F(ParametersOnWire, ObjectOfNoKindIsRefused) {
  ExpectValueRefused(Variant::FromObject(CountingObjectPtr(new CountingObject).get()));
  ExpectValueRefused(Variant::FromObject(nullptr));
}

TEST_F(ParametersOnWire, ObjectValueWhoseQueryFailsIsRefused) {
  const CountingObjectPtr object(new CountingObject);
  object->FailQueries(E_FAIL);
  ExpectValueRefused(Variant::FromObject(object.get()));
}

TEST_F(ParametersOnWire, TypeNamesWithoutFormaterAreRefused) {
  for (const char16_t* name : {u"no type", u"", u"xsd:float", u"decimal", u"xsd:idref"}) {
    const FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", Variant::FromInt(5), name);
    ExpectRefused(Variant::FromObject(list.get()));
  }
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->Put(u"k", Variant::FromInt(5), WideString());
  ExpectRefused(Variant::FromObject(list.get()));
}

TEST_F(ParametersOnWire, ByteThatCannotBeConvertedIsRefused) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->Put(u"k", Variant::FromString(u"abc"), u"byte");
  ExpectRefused(Variant::FromObject(list.get()));
}

TEST_F(ParametersOnWire, FailingSizeIsRefused) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->FailSize(E_FAIL);
  ExpectRefused(Variant::FromObject(list.get()));
}

TEST_F(ParametersOnWire, FailingFindIsRefused) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->Put(u"a", Variant::FromInt(1), u"int");
  list->Put(u"b", Variant::FromInt(2), u"int");
  list->FailFind(1, E_FAIL);
  ExpectRefused(Variant::FromObject(list.get()));
}

TEST_F(ParametersOnWire, NullParameterIsRefused) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->PutNull();
  ExpectRefused(Variant::FromObject(list.get()));
}

TEST_F(ParametersOnWire, FailingPropertiesAreRefused) {
  for (const char* operation : {"get_ParamValue", "get_ParamKey", "get_ParamTypeAsString"}) {
    log_.clear();
    const FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", Variant::FromInt(5), u"int")->Fail(operation, E_FAIL);
    ExpectRefused(Variant::FromObject(list.get()));
    EXPECT_EQ(log_.back(), operation);
  }
}

}  // namespace
}  // namespace qv
