#include "format/object_formaters.h"

#include <gtest/gtest.h>

#include <string>

#include "fixtures/fake_duration.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "format/response_value_reader.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

class FormaterDurationTest : public FactoryFixture {
 protected:
  void TearDown() override { EXPECT_EQ(FakeDuration::Live(), 0); }

  // What a formater makes of <v>content</v>.
  static Variant Read(FormaterSerializer& formater, const std::u16string& content) {
    const XmlText xml(u"<v>" + content + u"</v>");
    return formater.ReadValue(xml.Root());
  }
  // What an answer of this content is.
  static Variant Answered(const std::u16string& content) {
    const XmlText xml(u"<r>" + content + u"</r>");
    return ReadResponseValue(xml.Root());
  }
  // The duration's text; the value is the only owner of the object, which has both interfaces.
  static std::string TextOf(const Variant& value) {
    EXPECT_EQ(value.Tag(), VT_UNKNOWN);
    if (value.Object() == nullptr) return "no object";
    EXPECT_EQ(value.Object()->AddRef(), 2u);
    EXPECT_EQ(value.Object()->Release(), 1u);
    const IDurationPtr duration = As<IDuration>(value.Object());
    const IDurationRawPtr raw = As<IDurationRaw>(value.Object());
    if (duration == nullptr || raw == nullptr) return "no duration";
    WideString text;
    EXPECT_EQ(raw->GetText(&text), S_OK);
    return Shown(text);
  }
  std::string DurationRead(const std::u16string& content) { return TextOf(Read(duration_, content)); }
  // A failed call with a result code: whether the words come with it is the caller's affair.
  void ExpectDurationRefused(const std::u16string& content) {
    const std::string line = Thrown([&] { Read(duration_, content); });
    EXPECT_EQ(line.substr(0, 21), "_com_error 0x80020009") << Shown(content);
  }
  std::string Written(IUnknown* object) { return Shown(duration_.WriteValue(Variant::FromObject(object))); }
  std::string WritingFails(const Variant& value) {
    return Thrown([&] { duration_.WriteValue(value); }).substr(0, 21);
  }

  FormaterDuration duration_;
};

constexpr char kCannotDeserialize[] = "EQvException 0x00000000 Cannot deserialize the response.";
constexpr char kNoDuration[] = "_com_error 0x80004003";

TEST_F(FormaterDurationTest, StandsUnderTwoNames) {
  for (const char16_t* name : {u"duration", u"xsd:duration", u"XSD:Duration"})
    EXPECT_NE(dynamic_cast<FormaterDuration*>(Get(name)), nullptr) << Shown(name);
  EXPECT_NE(Get(u"duration"), Get(u"xsd:duration"));
}

TEST_F(FormaterDurationTest, TextBecomesADuration) {
  for (const char16_t* text : {u"P1Y2M3DT4H5M6.5S", u"-P1D", u"PT90S", u"P0"})
    EXPECT_EQ(DurationRead(text), Shown(text));
  EXPECT_EQ(DurationRead(u"P3D1Y"), "P3Y");
  EXPECT_EQ(DurationRead(u"P"), "P0");
  EXPECT_EQ(DurationRead(u"P1D "), "P1D");
  EXPECT_EQ(DurationRead(u"PT12345678.9S"), "PT1.23457e+07S");
}

TEST_F(FormaterDurationTest, TextIsTheFirstTextChildOrTheLastChild) {
  EXPECT_EQ(DurationRead(u"<b/>P1D"), "P1D");
  EXPECT_EQ(DurationRead(u"P1D<b/>P2D"), "P1D");
  EXPECT_EQ(DurationRead(u"<![CDATA[P1D]]>"), "P1D");
  ExpectDurationRefused(u"<b>P1D</b>");
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
  EXPECT_EQ(TextOf(first), "-P1D");
  EXPECT_EQ(TextOf(second), "-P1D");
}

TEST_F(FormaterDurationTest, BadTextIsAFailedCall) {
  for (const char16_t* text : {u"p1d", u"P-1D", u"1D", u"", u" P1D", u"\nP1D", u"-1D", u"PT1.23457e+07S"})
    ExpectDurationRefused(text);
  EXPECT_EQ(Thrown([this] { duration_.ReadValue(XmlNode()); }).substr(0, 21), "_com_error 0x80020009");
}

TEST_F(FormaterDurationTest, AnsweredDurationIsAnObject) {
  for (const char16_t* name : {u"xsd:duration", u"duration", u"XSD:DURATION", u"Duration"})
    EXPECT_EQ(TextOf(Answered(u"<v xsi:type='" + std::u16string(name) + u"'>-P1DT2H</v>")), "-P1DT2H")
        << Shown(name);
  EXPECT_EQ(Answered(u"<v xsi:type='sof:duration'>P1D</v>").Tag(), VT_EMPTY);
  EXPECT_EQ(Answered(u"<v xsi:null='1'>P1D</v>").Tag(), VT_NULL);
}

TEST_F(FormaterDurationTest, AnsweredBadTextCannotBeDeserialized) {
  for (const char16_t* text : {u"p1d", u"P-1D", u"1D", u"", u"<b>P1D</b>"})
    EXPECT_EQ(Thrown([text] { Answered(u"<v xsi:type='xsd:duration'>" + std::u16string(text) + u"</v>"); }),
              kCannotDeserialize)
        << Shown(text);
}

TEST_F(FormaterDurationTest, DurationIsWrittenAsItsText) {
  for (const char16_t* text : {u"P1Y2M3DT4H5M6.5S", u"-P1D", u"PT90S", u"P0", u"-P0"}) {
    const IDurationPtr duration = CreateDuration(text);
    EXPECT_EQ(Written(duration.get()), Shown(text));
    EXPECT_EQ(duration->AddRef(), 2u);
    EXPECT_EQ(duration->Release(), 1u);
  }
  const IDurationPtr large = CreateDuration();
  EXPECT_EQ(large->put_Sec(12345678.9), S_OK);
  EXPECT_EQ(Written(large.get()), "PT1.23457e+07S");
}

TEST_F(FormaterDurationTest, TextOfAForeignDurationIsEscaped) {
  const FakeDurationPtr foreign(new FakeDuration(u"<P1D>&\"'\u00E9"));
  EXPECT_EQ(Written(foreign.get()), "&lt;P1D&gt;&amp;&quot;&apos;&#233;");
  EXPECT_EQ(foreign->References(), 1u);
}

TEST_F(FormaterDurationTest, NullTextIsWrittenEmpty) {
  const FakeDurationPtr foreign(new FakeDuration(WideString()));
  EXPECT_TRUE(duration_.WriteValue(Variant::FromObject(foreign.get())).IsEmpty());
}

TEST_F(FormaterDurationTest, ObjectUnderDispatchIsWrittenToo) {
  const FakeDurationPtr foreign(new FakeDuration(u"P1D"));
  foreign->AddRef();
  VariantData data;
  data.punkVal = foreign.get();
  const Variant value = Variant::FromRaw(VT_DISPATCH, data);
  EXPECT_EQ(Shown(duration_.WriteValue(value)), "P1D");
}

TEST_F(FormaterDurationTest, ObjectWithoutAnInterfaceIsNoDuration) {
  const FakeDurationPtr foreign(new FakeDuration(u"P1D"));
  const Variant value = Variant::FromObject(foreign.get());
  foreign->AnswerRaw(E_NOINTERFACE);
  EXPECT_EQ(WritingFails(value), kNoDuration);
  foreign->AnswerDuration(E_NOINTERFACE);
  EXPECT_EQ(WritingFails(value), kNoDuration);
  foreign->AnswerRaw(S_OK);
  EXPECT_EQ(WritingFails(value), kNoDuration);
  EXPECT_EQ(foreign->References(), 2u);
  EXPECT_EQ(WritingFails(Variant::FromObject(CreateUrl().get())), kNoDuration);
}

TEST_F(FormaterDurationTest, ValueWithoutObjectIsNoDuration) {
  EXPECT_EQ(WritingFails(Variant::FromObject(nullptr)), kNoDuration);
  EXPECT_EQ(WritingFails(Variant()), kNoDuration);
  EXPECT_EQ(WritingFails(Variant::Null()), kNoDuration);
  EXPECT_EQ(WritingFails(Variant::FromInt(5)), kNoDuration);
  EXPECT_EQ(WritingFails(Variant::FromString(u"P1D")), kNoDuration);
}

TEST_F(FormaterDurationTest, FailedQuestionBringsItsCode) {
  const FakeDurationPtr foreign(new FakeDuration(u"P1D"));
  const Variant value = Variant::FromObject(foreign.get());
  foreign->AnswerRaw(E_OUTOFMEMORY);
  EXPECT_EQ(WritingFails(value), "_com_error 0x8007000E");
  foreign->AnswerDuration(E_FAIL);
  EXPECT_EQ(WritingFails(value), "_com_error 0x80004005");
  EXPECT_EQ(foreign->References(), 2u);
}

TEST_F(FormaterDurationTest, FailedTextBringsItsCode) {
  const FakeDurationPtr foreign(new FakeDuration(u"P1D"));
  foreign->FailGetText(E_UNEXPECTED);
  EXPECT_EQ(WritingFails(Variant::FromObject(foreign.get())), "_com_error 0x8000FFFF");
  EXPECT_EQ(foreign->References(), 1u);
}

}  // namespace
}  // namespace qv
