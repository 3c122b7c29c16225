#include <gtest/gtest.h>

#include <string>

#include "fixtures/xml_text.h"
#include "format/response_value_reader.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

WideString TypeNameOf(const std::u16string& attributeValue) {
  const XmlText xml(u"<v xsi:type=\"" + attributeValue + u"\"/>");
  return ReadTypeName(xml.Root().Attribute(u"xsi:type"));
}

TEST(ReadTypeName, IsInLowerCase) {
  EXPECT_EQ(TypeNameOf(u"xsd:dateTime"), u"xsd:datetime");
  EXPECT_EQ(TypeNameOf(u"XSD:INT"), u"xsd:int");
  EXPECT_EQ(TypeNameOf(u"string"), u"string");
  EXPECT_EQ(TypeNameOf(u"\u00C9X\u0416"), u"\u00C9x\u0416");
}

TEST(ReadTypeName, NothingIsTrimmed) {
  EXPECT_EQ(TypeNameOf(u" Int "), u" int ");
}

TEST(ReadTypeName, AnyRecordListIsOfTheSofNamespace) {
  for (const char16_t* name :
       {u"sof:RecordList", u"recordlist", u"ns:RecordList", u"RECORDLIST", u"myRecordLists"})
    EXPECT_EQ(TypeNameOf(name), u"sof:recordlist") << testing::PrintToString(WideString(name));
}

TEST(ReadTypeName, PartsOfTheWordStayAsTheyAre) {
  EXPECT_EQ(TypeNameOf(u"sof:Record"), u"sof:record");
  EXPECT_EQ(TypeNameOf(u"record list"), u"record list");
}

TEST(ReadTypeName, EmptyAttributeGivesAnEmptyName) {
  EXPECT_TRUE(TypeNameOf(u"").IsEmpty());
}

TEST(ReadTypeName, EntitiesAreResolved) {
  EXPECT_EQ(TypeNameOf(u"a&amp;B&#67;"), u"a&bc");
}

TEST(ReadTypeName, NoAttributeGivesAnEmptyName) {
  EXPECT_TRUE(ReadTypeName(XmlNode()).IsEmpty());
}

}  // namespace
}  // namespace qv
