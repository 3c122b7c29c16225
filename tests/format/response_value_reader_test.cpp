// The value of an answer: its type decides which formater reads it.
#include "format/response_value_reader.h"

#include <functional>
#include <initializer_list>
#include <stdexcept>

#include "fixtures/shown_value.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "format/factory_fixture.h"
#include "format/probe_formater.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr char kParseFault[] = "EQvException 0x00000000 Scriptwells SOAP module - General Parse fault.";
constexpr char kCannotDeserialize[] = "EQvException 0x00000000 Cannot deserialize the response.";

class ReadResponseValueTest : public FactoryFixture {
 protected:
  static void ExpectThrown(const std::string& thrown, const std::u16string& content) {
    EXPECT_EQ(Thrown([&] { ReadAnswer(content); }), thrown) << Shown(content);
  }
  static void ExpectValue(const Variant& value, const Variant& expected, const WideString& row) {
    EXPECT_EQ(value.Tag(), expected.Tag()) << Shown(row);
    EXPECT_EQ(value.Data().llVal, expected.Data().llVal) << Shown(row);
  }
  // Content of the named types.
  static void ExpectTyped(const Variant& expected, const char16_t* content,
                          std::initializer_list<const char16_t*> names) {
    for (const char16_t* name : names) ExpectValue(ReadAnswer(name, content), expected, name);
  }
};

TEST_F(ReadResponseValueTest, NullNodeIsRefused) {
  EXPECT_EQ(Thrown([] { ReadResponseValue(XmlNode()); }), "EQvException 0x00000000 The node is NULL.");
}

TEST_F(ReadResponseValueTest, WrapperWithoutChildIsNull) {
  EXPECT_EQ(ReadAnswer(u"").Tag(), VT_NULL);
  const XmlText xml(u"<r/>");
  EXPECT_EQ(ReadResponseValue(xml.Root()).Tag(), VT_NULL);
}

TEST_F(ReadResponseValueTest, FirstChildOfAnotherKindIsEmpty) {
  for (const char16_t* content : {u"text", u" <v xsi:type='xsd:int'>5</v>", u"\n<v/>", u"<![CDATA[5]]>"})
    ExpectValue(ReadAnswer(content), Variant(), content);
}

TEST_F(ReadResponseValueTest, NullMarkIsNullWhateverItsValue) {
  for (const char16_t* mark : {u"1", u"true", u"0", u"false", u""})
    EXPECT_EQ(ReadAnswer(u"<v xsi:null='" + std::u16string(mark) + u"'>5</v>").Tag(), VT_NULL);
  ExpectValue(ReadAnswer(u"<v xsi:null='1' xsi:type='xsd:int'>5</v>"), Int(5), u"the type goes before");
}

TEST_F(ReadResponseValueTest, ElementWithNeitherIsAParseFault) {
  for (const char16_t* content :
       {u"<v/>", u"<v>5</v>", u"<v other='1'/>", u"<v type='xsd:int'>5</v>", u"<v xsi:nil='1'/>",
        u"<v XSI:TYPE='xsd:int'>5</v>", u"<v xsi:Type='xsd:int'>5</v>", u"<v i:type='xsd:int'>5</v>",
        u"<v xsi:NULL='1'/>"})
    ExpectThrown(kParseFault, content);
}

TEST_F(ReadResponseValueTest, TypeDecidesTagAndValue) {
  ExpectTyped(Bool(true), u"true", {u"xsd:boolean"});
  ExpectTyped(Bool(true), u"1", {u"boolean"});
  ExpectTyped(Bool(false), u"TRUE", {u"boolean"});
  ExpectTyped(I1(0), u"5", {u"xsd:byte", u"byte"});
  ExpectTyped(I2(4464), u"70000", {u"xsd:short"});
  ExpectTyped(I2(5), u"5", {u"short"});
  ExpectTyped(Int(12), u"12abc", {u"xsd:int"});
  ExpectTyped(Int(5), u"5", {u"int", u"xsd:INT", u"XSD:Int", u"INT"});
  ExpectTyped(R4(1.0F), u"1", {u"float"});
  ExpectTyped(R8(1.0), u"1", {u"xsd:double"});
  ExpectTyped(R8(0.0), u"abc", {u"double"});
  for (const char16_t* name : {u"xsd:long", u"long"}) EXPECT_EQ(ReadAnswer(name, u"5").Tag(), VT_EMPTY);
}

TEST_F(ReadResponseValueTest, StringHasSeveralNames) {
  for (const char16_t* name :
       {u"xsd:string", u"string", u"String", u"idref", u"language", u"Lang", u"ref", u"age"})
    EXPECT_EQ(ShownValue(ReadAnswer(name, u"a&lt;b")), "VT_BSTR a<b") << Shown(name);
  EXPECT_EQ(ShownValue(ReadAnswer(u"<v xsi:type='xsd:string'/>")), "VT_BSTR ");
}

TEST_F(ReadResponseValueTest, UnknownTypeIsEmptyWithoutFailure) {
  ExpectTyped(Variant(), u"5",
              {u"xsd:float", u"xsd:decimal", u"xsd:language", u"xsd:idref", u"", u"ns:int", u"made up"});
}

TEST_F(ReadResponseValueTest, EveryTypeIsUnknownWithoutFormaters) {
  Factory()->Clear();
  EXPECT_EQ(ReadAnswer(u"xsd:int", u"5").Tag(), VT_EMPTY);
  EXPECT_EQ(ReadAnswer(u"<v xsi:null='1'/>").Tag(), VT_NULL);
}

TEST_F(ReadResponseValueTest, SecondValueAndTheElementsNameDoNotMatter) {
  for (const char16_t* content :
       {u"<v xsi:type='xsd:int'>1</v><v xsi:type='xsd:int'>2</v>", u"<v xsi:type='xsd:int'>1</v><v/>text",
        u"<any:name xsi:type='xsd:int'>1</any:name>"})
    EXPECT_EQ(ReadAnswer(content).Data().intVal, 1) << Shown(content);
  EXPECT_EQ(ReadAnswer(u"<v xsi:null='1'/><v xsi:type='xsd:int'>2</v>").Tag(), VT_NULL);
  ExpectThrown(kParseFault, u"<v/><v xsi:type='xsd:int'>2</v>");
}

TEST_F(ReadResponseValueTest, FormaterGetsTheValueElement) {
  ProbeFormaterCreator creator(u"test:probe");
  EXPECT_EQ(ReadAnswer(u"<value xsi:type='Test:Probe'>5</value>").Text(), u"probe");
  EXPECT_EQ(creator.formater.lastName, u"value");
}

TEST_F(ReadResponseValueTest, AnyRecordListTypeReachesItsFormater) {
  Factory()->Clear();
  ProbeFormaterCreator creator(u"sof:recordlist");
  for (const char16_t* name : {u"ns:RecordList", u"RECORDLIST", u"sof:recordlist", u"myRecordLists"})
    EXPECT_EQ(ReadAnswer(name, u"").Text(), u"probe") << Shown(name);
}

TEST_F(ReadResponseValueTest, FormatersOwnMessagePassesAndAnyOtherFailureHasOneText) {
  ProbeFormaterCreator creator(u"test:fails");
  const struct {
    std::function<void()> fail;
    const char* thrown;
  } rows[] = {{[] { throw EQvException(u"my words", 7); }, "EQvException 0x80040007 my words"},
              {[] { throw EQvException(u"no number"); }, "EQvException 0x00000000 no number"},
              {[] { throw EQvException(WideString(), 7); }, "EQvException 0x80040007 <null>"},
              {[] { _com_raise_error(E_POINTER); }, kCannotDeserialize},
              {[] { throw std::runtime_error("words"); }, kCannotDeserialize},
              {[] { throw 5; }, kCannotDeserialize}};
  for (const auto& row : rows) {
    creator.formater.read = [&](const XmlNode&) {
      row.fail();
      return Variant();
    };
    ExpectThrown(row.thrown, u"<v xsi:type='test:fails'/>");
  }
}

WideString TypeNameOf(const std::u16string& attributeValue) {
  const XmlText xml(u"<v xsi:type=\"" + attributeValue + u"\"/>");
  return ReadTypeName(xml.Root().Attribute(u"xsi:type"));
}

// In lower case, not trimmed, with entities resolved; any record list is one of the "sof" namespace.
TEST(ReadTypeName, IsTheFoldedAttribute) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {{u"xsd:dateTime", u"xsd:datetime"},
                                                              {u"XSD:INT", u"xsd:int"},
                                                              {u"string", u"string"},
                                                              {u"\u00C9X\u0416", u"\u00C9x\u0416"},
                                                              {u" Int ", u" int "},
                                                              {u"a&amp;B&#67;", u"a&bc"},
                                                              {u"sof:Record", u"sof:record"},
                                                              {u"record list", u"record list"},
                                                              {u"sof:RecordList", u"sof:recordlist"},
                                                              {u"recordlist", u"sof:recordlist"},
                                                              {u"ns:RecordList", u"sof:recordlist"},
                                                              {u"RECORDLIST", u"sof:recordlist"},
                                                              {u"myRecordLists", u"sof:recordlist"}};
  for (const auto& [attribute, name] : rows) EXPECT_EQ(TypeNameOf(attribute), name) << Shown(attribute);
}

TEST(ReadTypeName, EmptyOrMissingAttributeGivesAnEmptyName) {
  EXPECT_TRUE(TypeNameOf(u"").IsEmpty());
  EXPECT_TRUE(ReadTypeName(XmlNode()).IsEmpty());
}

}  // namespace
}  // namespace qv
