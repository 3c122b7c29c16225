// Durations in answers and as parameters.
#include "format/object_formaters.h"

#include <functional>

#include "fixtures/fake_duration.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "format/factory_fixture.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

constexpr char kNotBuilt[] = "_com_error 0x80020009";
constexpr char kNoDuration[] = "_com_error 0x80004003";

class FormaterDurationTest : public FactoryFixture {
 protected:
  void TearDown() override {
    foreign_.reset();
    EXPECT_EQ(FakeDuration::Live(), 0);
  }

  // The duration's text; the value is the only owner of the object, which has both interfaces.
  static std::string TextOf(const Variant& value) {
    EXPECT_EQ(value.Tag(), VT_UNKNOWN);
    if (value.Object() == nullptr) return "no object";
    EXPECT_EQ(value.Object()->AddRef(), 2U);
    EXPECT_EQ(value.Object()->Release(), 1U);
    const IDurationPtr duration = As<IDuration>(value.Object());
    const IDurationRawPtr raw = As<IDurationRaw>(value.Object());
    if (duration == nullptr || raw == nullptr) return "no duration";
    WideString text;
    EXPECT_EQ(raw->GetText(&text), S_OK);
    return Shown(text);
  }
  std::string DurationRead(const std::u16string& content) { return TextOf(ReadContent(&duration_, content)); }
  std::string Written(IUnknown* object) { return Shown(duration_.WriteValue(Variant::FromObject(object))); }
  // Whether a message comes with the code is the caller's affair.
  static std::string CodeOf(const std::function<void()>& action) { return Thrown(action).substr(0, 21); }
  std::string WritingFails(const Variant& value) {
    return CodeOf([&] { duration_.WriteValue(value); });
  }

  FormaterDuration duration_;
  FakeDurationPtr foreign_{new FakeDuration(u"P1D")};
};

TEST_F(FormaterDurationTest, IsRegisteredUnderTwoNames) {
  for (const char16_t* name : {u"duration", u"xsd:duration", u"XSD:Duration"})
    EXPECT_NE(dynamic_cast<FormaterDuration*>(Get(name)), nullptr) << Shown(name);
  EXPECT_NE(Get(u"duration"), Get(u"xsd:duration"));
}

TEST_F(FormaterDurationTest, TextBecomesADuration) {
  const std::pair<const char16_t*, const char*> rows[] = {{u"P1Y2M3DT4H5M6.5S", "P1Y2M3DT4H5M6.5S"},
                                                          {u"-P1D", "-P1D"},
                                                          {u"PT90S", "PT90S"},
                                                          {u"P0", "P0"},
                                                          {u"P3D1Y", "P3Y"},
                                                          {u"P", "P0"},
                                                          {u"P1D ", "P1D"},
                                                          {u"PT12345678.9S", "PT1.23457e+07S"},
                                                          {u"<b/>P1D", "P1D"},
                                                          {u"P1D<b/>P2D", "P1D"},
                                                          {u"<![CDATA[P1D]]>", "P1D"}};
  for (const auto& [content, text] : rows) EXPECT_EQ(DurationRead(content), text) << Shown(content);
}

TEST_F(FormaterDurationTest, TextNodeAndAttributeAreReadThemselves) {
  const XmlText xml(u"<v a='-P2D'>P1D</v>");
  EXPECT_EQ(TextOf(duration_.ReadValue(xml.Root().FirstChild())), "P1D");
  EXPECT_EQ(TextOf(duration_.ReadValue(xml.Root().Attribute(u"a"))), "-P2D");
}

TEST_F(FormaterDurationTest, EachReadMakesANewObject) {
  const XmlText xml(u"<v>-P1D</v>");
  const Variant first = duration_.ReadValue(xml.Root());
  const Variant second = duration_.ReadValue(xml.Root());
  EXPECT_NE(first.Object(), second.Object());
  for (const Variant* value : {&first, &second}) EXPECT_EQ(TextOf(*value), "-P1D");
}

TEST_F(FormaterDurationTest, BadTextIsAFailedCall) {
  for (const char16_t* text :
       {u"p1d", u"P-1D", u"1D", u"", u" P1D", u"\nP1D", u"-1D", u"PT1.23457e+07S", u"<b>P1D</b>"})
    EXPECT_EQ(CodeOf([&] { ReadContent(&duration_, text); }), kNotBuilt) << Shown(text);
  EXPECT_EQ(CodeOf([&] { duration_.ReadValue(XmlNode()); }), kNotBuilt);
}

TEST_F(FormaterDurationTest, AnsweredDurationIsAnObject) {
  for (const char16_t* name : {u"xsd:duration", u"duration", u"XSD:DURATION", u"Duration"})
    EXPECT_EQ(TextOf(ReadAnswer(name, u"-P1DT2H")), "-P1DT2H") << Shown(name);
  EXPECT_EQ(ReadAnswer(u"sof:duration", u"P1D").Tag(), VT_EMPTY);
  EXPECT_EQ(ReadAnswer(u"<v xsi:null='1'>P1D</v>").Tag(), VT_NULL);
}

TEST_F(FormaterDurationTest, AnsweredBadTextCannotBeDeserialized) {
  for (const char16_t* text : {u"p1d", u"P-1D", u"1D", u"", u"<b>P1D</b>"})
    EXPECT_EQ(Thrown([text] { ReadAnswer(u"xsd:duration", text); }),
              "EQvException 0x00000000 Cannot deserialize the response.")
        << Shown(text);
}

TEST_F(FormaterDurationTest, DurationIsWrittenAsItsText) {
  for (const char16_t* text : {u"P1Y2M3DT4H5M6.5S", u"-P1D", u"PT90S", u"P0", u"-P0"}) {
    const IDurationPtr duration = CreateDuration(text);
    EXPECT_EQ(Written(duration.get()), Shown(text));
    EXPECT_EQ(duration->AddRef(), 2U);
    EXPECT_EQ(duration->Release(), 1U);
  }
  const IDurationPtr large = CreateDuration();
  EXPECT_EQ(large->put_Sec(12345678.9), S_OK);
  EXPECT_EQ(Written(large.get()), "PT1.23457e+07S");
}

TEST_F(FormaterDurationTest, TextOfAForeignDurationIsEscaped) {
  const FakeDurationPtr foreign(new FakeDuration(u"<P1D>&\"'\u00E9"));
  EXPECT_EQ(Written(foreign.get()), "&lt;P1D&gt;&amp;&quot;&apos;&#233;");
  EXPECT_EQ(foreign->References(), 1U);
  const FakeDurationPtr null(new FakeDuration(WideString()));
  EXPECT_TRUE(duration_.WriteValue(Variant::FromObject(null.get())).IsEmpty());
}

TEST_F(FormaterDurationTest, ObjectUnderDispatchIsWrittenToo) {
  EXPECT_EQ(Shown(duration_.WriteValue(UnderDispatch(foreign_.get()))), "P1D");
}

TEST_F(FormaterDurationTest, OtherValuesAreNoDurations) {
  const Variant value = Variant::FromObject(foreign_.get());
  foreign_->AnswerRaw(E_NOINTERFACE);
  EXPECT_EQ(WritingFails(value), kNoDuration);
  foreign_->AnswerDuration(E_NOINTERFACE);
  EXPECT_EQ(WritingFails(value), kNoDuration);
  foreign_->AnswerRaw(S_OK);
  EXPECT_EQ(WritingFails(value), kNoDuration);
  EXPECT_EQ(foreign_->References(), 2U);
  for (const Variant& other : {Variant::FromObject(CreateUrl().get()), Variant::FromObject(nullptr),
                               Variant(), Variant::Null(), Int(5), Text(u"P1D")})
    EXPECT_EQ(WritingFails(other), kNoDuration) << other.Tag();
}

TEST_F(FormaterDurationTest, FailedCallBringsItsCode) {
  const Variant value = Variant::FromObject(foreign_.get());
  foreign_->FailGetText(E_UNEXPECTED);
  EXPECT_EQ(WritingFails(value), "_com_error 0x8000FFFF");
  foreign_->AnswerRaw(E_OUTOFMEMORY);
  EXPECT_EQ(WritingFails(value), "_com_error 0x8007000E");
  foreign_->AnswerDuration(E_FAIL);
  EXPECT_EQ(WritingFails(value), "_com_error 0x80004005");
  EXPECT_EQ(foreign_->References(), 2U);
}

}  // namespace
}  // namespace qv
