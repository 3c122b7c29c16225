#include "format/response_value_reader.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "format/probe_formater.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

class ReadResponseValueTest : public FactoryFixture {
 protected:
  // The value of <r>content</r>.
  static Variant Read(const std::u16string& content) {
    const XmlText xml(u"<r>" + content + u"</r>");
    return ReadResponseValue(xml.Root());
  }
  static void ExpectRaised(const std::u16string& content, const char16_t* words, HRESULT code = 0) {
    try {
      Read(content);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const EQvException& error) {
      EXPECT_EQ(error.Description(), words);
      EXPECT_EQ(error.Code(), code);
    }
  }
};

constexpr char16_t kParseFault[] = u"Scriptwells SOAP module - General Parse fault.";
constexpr char16_t kCannotDeserialize[] = u"Cannot deserialize the response.";

TEST_F(ReadResponseValueTest, NullNodeIsRefused) {
  try {
    ReadResponseValue(XmlNode());
    FAIL() << "nothing was thrown";
  } catch (const EQvException& error) {
    EXPECT_EQ(error.Description(), u"The node is NULL.");
    EXPECT_EQ(error.Code(), 0);
  }
}

TEST_F(ReadResponseValueTest, WrapperWithoutChildIsNull) {
  EXPECT_EQ(Read(u"").Tag(), VT_NULL);
  const XmlText xml(u"<r/>");
  EXPECT_EQ(ReadResponseValue(xml.Root()).Tag(), VT_NULL);
}

TEST_F(ReadResponseValueTest, FirstChildThatIsNoElementIsEmpty) {
  for (const char16_t* content : {u"text", u" <v xsi:type='xsd:int'>5</v>", u"\n<v/>", u"<![CDATA[5]]>"}) {
    const Variant value = Read(content);
    EXPECT_EQ(value.Tag(), VT_EMPTY) << testing::PrintToString(WideString(content));
    EXPECT_EQ(value.Data().llVal, 0);
  }
}

TEST_F(ReadResponseValueTest, NullMarkIsNullWhateverItsValue) {
  for (const char16_t* mark : {u"1", u"true", u"0", u"false", u""})
    EXPECT_EQ(Read(u"<v xsi:null='" + std::u16string(mark) + u"'>5</v>").Tag(), VT_NULL);
}

TEST_F(ReadResponseValueTest, TypeGoesBeforeNullMark) {
  const Variant value = Read(u"<v xsi:null='1' xsi:type='xsd:int'>5</v>");
  EXPECT_EQ(value.Tag(), VT_INT);
  EXPECT_EQ(value.Data().intVal, 5);
}

TEST_F(ReadResponseValueTest, ElementWithNeitherIsAParseFault) {
  for (const char16_t* content :
       {u"<v/>", u"<v>5</v>", u"<v other='1'/>", u"<v type='xsd:int'>5</v>", u"<v xsi:nil='1'/>",
        u"<v XSI:TYPE='xsd:int'>5</v>", u"<v xsi:Type='xsd:int'>5</v>", u"<v i:type='xsd:int'>5</v>",
        u"<v xsi:NULL='1'/>"})
    ExpectRaised(content, kParseFault);
}

struct ValueRow {
  const char16_t* typeName;
  const char16_t* content;
  VARTYPE tag;
  std::int64_t bytes;
};

TEST_F(ReadResponseValueTest, TypeDecidesTagAndValue) {
  const ValueRow rows[] = {
      {u"xsd:boolean", u"true", VT_BOOL, 0xFFFF},
      {u"boolean", u"1", VT_BOOL, 0xFFFF},
      {u"boolean", u"TRUE", VT_BOOL, 0},
      {u"xsd:byte", u"5", VT_I1, 0},
      {u"byte", u"5", VT_I1, 0},
      {u"xsd:short", u"70000", VT_I2, 4464},
      {u"short", u"5", VT_I2, 5},
      {u"xsd:int", u"12abc", VT_INT, 12},
      {u"int", u"5", VT_INT, 5},
      {u"xsd:INT", u"5", VT_INT, 5},
      {u"XSD:Int", u"5", VT_INT, 5},
      {u"INT", u"5", VT_INT, 5},
      {u"float", u"1", VT_R4, 0x3F800000},
      {u"xsd:double", u"1", VT_R8, 0x3FF0000000000000},
      {u"double", u"abc", VT_R8, 0},
  };
  for (const ValueRow& row : rows) {
    const Variant value =
        Read(u"<v xsi:type='" + std::u16string(row.typeName) + u"'>" + row.content + u"</v>");
    EXPECT_EQ(value.Tag(), row.tag) << testing::PrintToString(WideString(row.typeName));
    EXPECT_EQ(value.Data().llVal, row.bytes) << testing::PrintToString(WideString(row.typeName));
  }
}

TEST_F(ReadResponseValueTest, LongComesWithoutTag) {
  EXPECT_EQ(Read(u"<v xsi:type='xsd:long'>5</v>").Tag(), VT_EMPTY);
  EXPECT_EQ(Read(u"<v xsi:type='long'>5</v>").Tag(), VT_EMPTY);
}

TEST_F(ReadResponseValueTest, StringHasSeveralNames) {
  for (const char16_t* name :
       {u"xsd:string", u"string", u"String", u"idref", u"language", u"Lang", u"ref", u"age"}) {
    const Variant value = Read(u"<v xsi:type='" + std::u16string(name) + u"'>a&lt;b</v>");
    EXPECT_EQ(value.Tag(), VT_BSTR) << testing::PrintToString(WideString(name));
    EXPECT_EQ(value.Text(), u"a<b") << testing::PrintToString(WideString(name));
  }
}

TEST_F(ReadResponseValueTest, EmptyStringIsNoNull) {
  const Variant value = Read(u"<v xsi:type='xsd:string'/>");
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_TRUE(value.Text().IsEmpty());
  EXPECT_FALSE(value.Text().IsNull());
}

TEST_F(ReadResponseValueTest, UnknownTypeIsEmptyWithoutFailure) {
  for (const char16_t* name :
       {u"xsd:float", u"xsd:decimal", u"xsd:language", u"xsd:idref", u"", u"ns:int", u"made up"}) {
    const Variant value = Read(u"<v xsi:type='" + std::u16string(name) + u"'>5</v>");
    EXPECT_EQ(value.Tag(), VT_EMPTY) << testing::PrintToString(WideString(name));
    EXPECT_EQ(value.Data().llVal, 0) << testing::PrintToString(WideString(name));
  }
}

TEST_F(ReadResponseValueTest, EveryTypeIsUnknownWithoutFormaters) {
  Factory()->Clear();
  EXPECT_EQ(Read(u"<v xsi:type='xsd:int'>5</v>").Tag(), VT_EMPTY);
  EXPECT_EQ(Read(u"<v xsi:null='1'/>").Tag(), VT_NULL);
}

TEST_F(ReadResponseValueTest, SecondValueIsIgnored) {
  EXPECT_EQ(Read(u"<v xsi:type='xsd:int'>1</v><v xsi:type='xsd:int'>2</v>").Data().intVal, 1);
  EXPECT_EQ(Read(u"<v xsi:type='xsd:int'>1</v><v/>text").Data().intVal, 1);
  EXPECT_EQ(Read(u"<v xsi:null='1'/><v xsi:type='xsd:int'>2</v>").Tag(), VT_NULL);
  ExpectRaised(u"<v/><v xsi:type='xsd:int'>2</v>", kParseFault);
}

TEST_F(ReadResponseValueTest, NameOfTheValueElementDoesNotMatter) {
  EXPECT_EQ(Read(u"<any:name xsi:type='xsd:int'>1</any:name>").Data().intVal, 1);
}

TEST_F(ReadResponseValueTest, FormaterGetsTheValueElement) {
  ProbeFormaterCreator creator(u"test:probe");
  EXPECT_EQ(Read(u"<value xsi:type='Test:Probe'>5</value>").Text(), u"probe");
  EXPECT_EQ(creator.formater.lastName, u"value");
}

TEST_F(ReadResponseValueTest, AnyRecordListTypeReachesItsFormater) {
  Factory()->Clear();
  ProbeFormaterCreator creator(u"sof:recordlist");
  for (const char16_t* name : {u"ns:RecordList", u"RECORDLIST", u"sof:recordlist", u"myRecordLists"})
    EXPECT_EQ(Read(u"<v xsi:type='" + std::u16string(name) + u"'/>").Text(), u"probe");
}

TEST_F(ReadResponseValueTest, FormatersOwnWordsPassUnchanged) {
  ProbeFormaterCreator creator(u"test:fails");
  creator.formater.read = [](const XmlNode&) -> Variant { throw EQvException(u"my words", 7); };
  ExpectRaised(u"<v xsi:type='test:fails'/>", u"my words", MakeResult(0x80040007));
  creator.formater.read = [](const XmlNode&) -> Variant { throw EQvException(u"no number"); };
  ExpectRaised(u"<v xsi:type='test:fails'/>", u"no number", 0);
  creator.formater.read = [](const XmlNode&) -> Variant { throw EQvException(WideString(), 7); };
  ExpectRaised(u"<v xsi:type='test:fails'/>", nullptr, MakeResult(0x80040007));
}

TEST_F(ReadResponseValueTest, AnyOtherFailureHasOneText) {
  ProbeFormaterCreator creator(u"test:fails");
  creator.formater.read = [](const XmlNode&) -> Variant { _com_raise_error(E_POINTER); };
  ExpectRaised(u"<v xsi:type='test:fails'/>", kCannotDeserialize);
  creator.formater.read = [](const XmlNode&) -> Variant { throw std::runtime_error("words"); };
  ExpectRaised(u"<v xsi:type='test:fails'/>", kCannotDeserialize);
  creator.formater.read = [](const XmlNode&) -> Variant { throw 5; };
  ExpectRaised(u"<v xsi:type='test:fails'/>", kCannotDeserialize);
}

}  // namespace
}  // namespace qv
