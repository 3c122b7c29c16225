// The pieces of a table's text.
#include "recordlist/xml_record_list_serializer_str.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <type_traits>

#include "fixtures/guid_shape.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"

namespace qv {
namespace {

constexpr char kBadHeader[] =
    "EQvException 0x00000000 Header contains special Xml chars that are not valid for tag name";

class SerializerTest : public testing::Test {
 protected:
  std::string Text() { return Shown(serializer_.TakeText()); }
  std::string ColumnThrows(std::u16string_view name) {
    return Thrown([&] { serializer_.WriteColumn(name, u"xsd:int", u"shown"); });
  }
  std::string Column(std::u16string_view name, std::u16string_view type, std::u16string_view shown) {
    serializer_.WriteColumn(name, type, shown);
    return Text();
  }
  static std::string ColumnElement(const std::string& name, const std::string& type,
                                   const std::string& shown) {
    return "<xsd:element xsd:name=\"" + name + "\" xsd:type=\"" + type + "\" xsd:displayName=\"" + shown +
           R"(" qvrl:valueSize="" qvrl:valueSize2=""/>)";
  }
  std::string Cell(std::u16string_view name, std::u16string_view text) {
    serializer_.WriteCell(name, text);
    return Text();
  }

  CXMLRecordListSerializerStr serializer_;
};

TEST_F(SerializerTest, CanBeDeletedThroughItsClassAndHasNoTextAtFirst) {
  EXPECT_TRUE(std::has_virtual_destructor<CXMLRecordListSerializerStr>::value);
  EXPECT_EQ(serializer_.TakeText().size(), 0U);
}

TEST_F(SerializerTest, ListNamesItsNamespaces) {
  serializer_.StartRecordList();
  EXPECT_EQ(Text(), "<RecordList xmlns:q1=\"" QV_NAMESPACE_HOST
                    "/dev/ns/SOF/2.0\" "
                    "xsi:type=\"q1:RecordList\" "
                    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">");
  serializer_.EndRecordList();
  EXPECT_EQ(Text(), "</RecordList>");
}

TEST_F(SerializerTest, SchemaHoldsItsIdTwice) {
  serializer_.StartSchema(u"uuid:x");
  EXPECT_EQ(Text(),
            "<xsd:schema targetNamespace=\"uuid:x\" "
            "xmlns:qvrl=\"" QV_NAMESPACE_HOST
            "/dev/ns/SOF/2.0\" "
            "xmlns:qvdt=\"" QV_NAMESPACE_HOST
            "/ns/core/DataTypes/1.0\" "
            "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
            "xmlns:tns=\"uuid:x\">");
  serializer_.EndSchema();
  EXPECT_EQ(Text(), "</xsd:schema>");
}

TEST_F(SerializerTest, BlocksHaveNoAttributes) {
  serializer_.StartHeaders();
  serializer_.EndHeaders();
  serializer_.StartRecords();
  serializer_.StartRecord();
  serializer_.EndRecord();
  serializer_.EndRecords();
  EXPECT_EQ(Text(), "<q1:Headers></q1:Headers><q1:Records><q1:Record></q1:Record></q1:Records>");
}

TEST_F(SerializerTest, ColumnIsAnEmptyElement) {
  EXPECT_EQ(Column(u"a", u"qvdt:Blob", u"A & \"B\" <c> 'd' \u00E9\u4E00"),
            ColumnElement("a", "qvdt:Blob", "A &amp; &quot;B&quot; &lt;c&gt; &apos;d&apos; &#233;&#19968;"));
  EXPECT_EQ(Column(u"", u"Undefined", u""), ColumnElement("", "Undefined", ""));
}

TEST_F(SerializerTest, NameThatTheEscapeWouldChangeIsRefused) {
  for (const char16_t* name : {u"a&b", u"&", u"<", u"a>", u"\"a", u"a'b", u"&amp;",
                               u"long name that ends so&", u"\u00E9", u"a\u4E00", u"a\u007F"}) {
    EXPECT_EQ(ColumnThrows(name), kBadHeader) << Shown(name);
    EXPECT_EQ(Text(), "") << Shown(name);
  }
}

TEST_F(SerializerTest, NullUnitEndsATextAndIsRefusedInAName) {
  EXPECT_EQ(ColumnThrows(std::u16string_view(u"a\0b", 3)), kBadHeader);
  EXPECT_EQ(ColumnThrows(std::u16string_view(u"a\0", 2)), kBadHeader);
  EXPECT_EQ(Column(u"a", u"xsd:int", std::u16string_view(u"A\0B", 3)), ColumnElement("a", "xsd:int", "A"));
  EXPECT_EQ(Cell(u"a", std::u16string_view(u"x\0y", 3)), "<a>x</a>");
}

TEST_F(SerializerTest, OtherCharactersPassThatXmlForbids) {
  for (const char16_t* name : {u"a b", u"1", u"-", u"a/b", u"=", u"a;b", u"\t", u"x:y:z", u"#", u"~"})
    EXPECT_EQ(ColumnThrows(name), "nothing") << Shown(name);
  Text();
  EXPECT_EQ(Column(u"a b/", u"xsd:int", u"d"), ColumnElement("a b/", "xsd:int", "d"));
}

TEST_F(SerializerTest, CellIsNamedAfterItsColumnAndEscapedOnceMore) {
  const struct {
    const char16_t* name;
    std::u16string_view text;
    const char* cell;
  } rows[] = {{u"a", u"text", "<a>text</a>"},
              {u"a b", u" ", "<a b> </a b>"},
              {u"", u"x", "<>x</>"},
              {u"a", u"", "<a/>"},
              {u"a b", std::u16string_view(), "<a b/>"},
              {u"a", u"a&amp;b", "<a>a&amp;amp;b</a>"},
              {u"a", u"&#233;", "<a>&amp;#233;</a>"},
              {u"a", u"<>\"'\u00E9", "<a>&lt;&gt;&quot;&apos;&#233;</a>"}};
  for (const auto& row : rows) EXPECT_EQ(Cell(row.name, row.text), row.cell);
}

TEST_F(SerializerTest, LargeTextsAreWhole) {
  const std::u16string many(100000, u'&');
  std::string expected = "<a>";
  for (int i = 0; i < 100000; ++i) expected += "&amp;";
  EXPECT_EQ(Cell(u"a", many), expected + "</a>");
}

TEST_F(SerializerTest, TakingTheTextLeavesNone) {
  serializer_.StartRecord();
  EXPECT_EQ(Text(), "<q1:Record>");
  EXPECT_EQ(Text(), "");
}

TEST(NewSchemaId, IsAGuidWithoutBracesAfterItsMark) {
  for (int i = 0; i < 20; ++i) {
    const std::string id = Shown(NewSchemaId());
    EXPECT_TRUE(id.compare(0, 5, "uuid:") == 0 && IsGuid(id.substr(5))) << id;
  }
}

TEST(NewSchemaId, EachCallMakesANewOne) {
  std::set<std::string> ids;
  for (int i = 0; i < 100; ++i) ids.insert(Shown(NewSchemaId()));
  EXPECT_EQ(ids.size(), 100U);
}

}  // namespace
}  // namespace qv
