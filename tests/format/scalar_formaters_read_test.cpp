#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include <xercesc/dom/DOM.hpp>

#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "format/scalar_formaters.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

namespace xml = XERCES_CPP_NAMESPACE;

class ScalarFormatersRead : public FactoryFixture {
 protected:
  // The content of <v>...</v>, read by the formater of a type.
  static Variant Read(const char16_t* typeName, const std::u16string& content) {
    const XmlText text(u"<v>" + content + u"</v>");
    return Get(typeName)->ReadValue(text.Root());
  }
  // The content as a text node itself.
  static Variant ReadTextNode(const char16_t* typeName, const std::u16string& content) {
    const XmlText text(u"<v>" + content + u"</v>");
    return Get(typeName)->ReadValue(text.Root().FirstChild());
  }
  static Variant ReadAttribute(const char16_t* typeName, const std::u16string& content) {
    const XmlText text(u"<v a='" + content + u"'/>");
    return Get(typeName)->ReadValue(text.Root().Attribute(u"a"));
  }
};

struct BoolRow {
  const char16_t* content;
  VARIANT_BOOL value;
};

TEST_F(ScalarFormatersRead, BooleanIsTrueForTwoSpellingsOnly) {
  const BoolRow rows[] = {
      {u"1", VARIANT_TRUE},
      {u"true", VARIANT_TRUE},
      {u"0", VARIANT_FALSE},
      {u"false", VARIANT_FALSE},
      {u"", VARIANT_FALSE},
      {u"yes", VARIANT_FALSE},
      {u"True", VARIANT_FALSE},
      {u"TRUE", VARIANT_FALSE},
      {u"-1", VARIANT_FALSE},
      {u"01", VARIANT_FALSE},
      {u"11", VARIANT_FALSE},
      {u"1.0", VARIANT_FALSE},
      {u" 1", VARIANT_FALSE},
      {u"1 ", VARIANT_FALSE},
      {u" true", VARIANT_FALSE},
      {u"true\n", VARIANT_FALSE},
      {u"<![CDATA[true]]>", VARIANT_TRUE},
      {u"<b>true</b>", VARIANT_FALSE},
  };
  for (const BoolRow& row : rows) {
    const Variant value = Read(u"boolean", row.content);
    EXPECT_EQ(value.Tag(), VT_BOOL) << testing::PrintToString(WideString(row.content));
    EXPECT_EQ(value.Data().boolVal, row.value) << testing::PrintToString(WideString(row.content));
  }
}

struct NumberRow {
  const char16_t* content;
  std::int32_t value;
};

TEST_F(ScalarFormatersRead, ByteOfAnElementIsZero) {
  for (const char16_t* content : {u"", u"5", u"-1", u"<b>5</b>", u"<![CDATA[5]]>"}) {
    const Variant value = Read(u"byte", content);
    EXPECT_EQ(value.Tag(), VT_I1);
    EXPECT_EQ(value.Data().llVal, 0) << testing::PrintToString(WideString(content));
  }
}

TEST_F(ScalarFormatersRead, ByteOfATextNodeIsItsNumberInThirtyTwoBits) {
  const NumberRow rows[] = {{u"5", 5},         {u"-1", -1},        {u" 12abc", 12}, {u"300", 300},
                            {u"70000", 70000}, {u"4294967301", 5}, {u"abc", 0}};
  for (const NumberRow& row : rows) {
    const Variant value = ReadTextNode(u"byte", row.content);
    EXPECT_EQ(value.Tag(), VT_I1);
    EXPECT_EQ(value.Data().lVal, row.value) << testing::PrintToString(WideString(row.content));
  }
  EXPECT_EQ(ReadTextNode(u"byte", u"300").Data().cVal, 44);
}

TEST_F(ScalarFormatersRead, ByteOfAnAttributeIsItsNumber) {
  EXPECT_EQ(ReadAttribute(u"byte", u"7").Data().cVal, 7);
}

TEST_F(ScalarFormatersRead, ShortIsCutToSixteenBits) {
  const NumberRow rows[] = {{u"5", 5},       {u"-5", -5},   {u"32767", 32767}, {u"32768", -32768},
                            {u"65535", -1},  {u"65536", 0}, {u"70000", 4464},  {u"-70000", -4464},
                            {u" 12abc", 12}, {u"abc", 0},   {u"", 0},          {u"4294967301", 5}};
  for (const NumberRow& row : rows) {
    const Variant value = Read(u"short", row.content);
    EXPECT_EQ(value.Tag(), VT_I2);
    EXPECT_EQ(value.Data().iVal, row.value) << testing::PrintToString(WideString(row.content));
  }
  EXPECT_EQ(Read(u"short", u"-1").Data().llVal, 0xFFFF) << "unused bytes are not zero";
}

TEST_F(ScalarFormatersRead, IntIsWhatAtoiMakesOfIt) {
  const NumberRow rows[] = {
      {u"5", 5},
      {u"-5", -5},
      {u"+5", 5},
      {u" \t\n5", 5},
      {u"12abc", 12},
      {u"abc", 0},
      {u"", 0},
      {u"-", 0},
      {u"1,000", 1},
      {u"1e3", 1},
      {u"0x10", 0},
      {u"3.99", 3},
      {u"2147483647", 2147483647},
      {u"-2147483648", INT32_MIN},
      {u"2147483648", INT32_MIN},
      {u"4294967295", -1},
      {u"18446744073709551617", 1},
      {u"12\u00E9", 12},
      {u"12&#x1F600;", 12},
      {u"\uFF11", 0},
      {u"7<b>8</b>9", 7},
      {u"<b>8</b>9", 9},
      {u"<![CDATA[8]]>", 8},
      {u"<b>8</b>", 0},
  };
  for (const NumberRow& row : rows) {
    const Variant value = Read(u"int", row.content);
    EXPECT_EQ(value.Tag(), VT_INT);
    EXPECT_EQ(value.Data().intVal, row.value) << testing::PrintToString(WideString(row.content));
  }
  EXPECT_EQ(Read(u"int", u"-1").Data().llVal, 0xFFFFFFFF) << "unused bytes are not zero";
  EXPECT_EQ(ReadAttribute(u"int", u"7").Data().intVal, 7);
  EXPECT_EQ(ReadTextNode(u"int", u"7").Data().intVal, 7);
}

TEST_F(ScalarFormatersRead, LongIsThirtyTwoBitsWidenedAndHasNoTag) {
  const NumberRow rows[] = {{u"5", 5},   {u"-5", -5}, {u"2147483647", 2147483647}, {u"2147483648", INT32_MIN},
                            {u"abc", 0}, {u"", 0},    {u"4294967301", 5},          {u"-4294967301", -5}};
  for (const NumberRow& row : rows) {
    const Variant value = Read(u"long", row.content);
    EXPECT_EQ(value.Tag(), VT_EMPTY);
    EXPECT_EQ(value.Data().llVal, row.value) << testing::PrintToString(WideString(row.content));
  }
}

struct RealRow {
  const char16_t* content;
  double value;
};

TEST_F(ScalarFormatersRead, DoubleIsWhatAtofMakesOfIt) {
  const double infinity = std::numeric_limits<double>::infinity();
  const RealRow rows[] = {
      {u"3.14", 3.14},
      {u" -2.5e3xyz", -2500.0},
      {u"abc", 0.0},
      {u"", 0.0},
      {u"1,5", 1.0},
      {u"1e400", infinity},
      {u"INF", infinity},
      {u"-INF", -infinity},
      {u"0x1p4", 16.0},
      {u".5", 0.5},
      {u"0.30000000000000004", 0.30000000000000004},
      {u"<![CDATA[2.5]]>", 2.5},
  };
  for (const RealRow& row : rows) {
    const Variant value = Read(u"double", row.content);
    EXPECT_EQ(value.Tag(), VT_R8);
    EXPECT_EQ(value.Data().dblVal, row.value) << testing::PrintToString(WideString(row.content));
  }
  EXPECT_TRUE(std::isnan(Read(u"double", u"NaN").Data().dblVal));
}

TEST_F(ScalarFormatersRead, FloatIsNarrowedToThirtyTwoBits) {
  const Variant value = Read(u"float", u"0.1");
  EXPECT_EQ(value.Tag(), VT_R4);
  EXPECT_EQ(value.Data().fltVal, 0.1f);
  EXPECT_EQ(Read(u"float", u"1").Data().llVal, 0x3F800000) << "unused bytes are not zero";
  EXPECT_EQ(Read(u"float", u"-2.5x").Data().fltVal, -2.5f);
  EXPECT_EQ(Read(u"float", u"abc").Data().fltVal, 0.0f);
  EXPECT_EQ(Read(u"float", u"1e39").Data().fltVal, std::numeric_limits<float>::infinity());
  EXPECT_EQ(Read(u"float", u"-1e400").Data().fltVal, -std::numeric_limits<float>::infinity());
  EXPECT_EQ(Read(u"float", u"1e-60").Data().fltVal, 0.0f);
  EXPECT_TRUE(std::isnan(Read(u"float", u"nan").Data().fltVal));
}

struct StringRow {
  const char16_t* content;
  std::u16string_view value;
};

TEST_F(ScalarFormatersRead, StringIsTheFirstText) {
  const StringRow rows[] = {
      {u"abc", u"abc"},
      {u"  a b\n", u"  a b\n"},
      {u"a&lt;b&#233;&amp;", u"a<b\u00E9&"},
      {u"\u0416&#x1F600;", u"\u0416\U0001F600"},
      {u"first<b/>second", u"first"},
      {u"<b>inner</b>outer", u"outer"},
      {u"", u""},
      {u"<b>inner</b>", u""},
      {u"<![CDATA[data]]>", u""},  // no text child, and an element has no value of its own
  };
  for (const StringRow& row : rows) {
    const Variant value = Read(u"string", row.content);
    EXPECT_EQ(value.Tag(), VT_BSTR);
    EXPECT_EQ(value.Text().view(), row.value) << testing::PrintToString(WideString(row.content));
  }
}

TEST_F(ScalarFormatersRead, StringOfTextNodeAndAttributeIsItsValue) {
  EXPECT_EQ(ReadTextNode(u"string", u"abc").Text(), u"abc");
  EXPECT_EQ(ReadAttribute(u"string", u"abc").Text(), u"abc");
}

TEST_F(ScalarFormatersRead, StringOfAnEmptyElementIsEmptyAndNotNull) {
  const Variant value = Read(u"string", u"");
  EXPECT_EQ(value.Tag(), VT_BSTR);
  EXPECT_FALSE(value.Text().IsNull());
}

TEST_F(ScalarFormatersRead, StringOutlivesItsDocument) {
  WideString text;
  { text = Read(u"string", u"kept").Text(); }
  EXPECT_EQ(text, u"kept");
}

TEST_F(ScalarFormatersRead, NullNodeIsTheEmptyText) {
  const XmlNode none;
  const Variant text = Get(u"string")->ReadValue(none);
  EXPECT_EQ(text.Tag(), VT_BSTR);
  EXPECT_TRUE(text.Text().IsEmpty());
  EXPECT_FALSE(text.Text().IsNull());
  EXPECT_EQ(Get(u"boolean")->ReadValue(none).Tag(), VT_BOOL);
  EXPECT_EQ(Get(u"boolean")->ReadValue(none).Data().llVal, 0);
  EXPECT_EQ(Get(u"byte")->ReadValue(none).Tag(), VT_I1);
  EXPECT_EQ(Get(u"byte")->ReadValue(none).Data().llVal, 0);
  EXPECT_EQ(Get(u"short")->ReadValue(none).Tag(), VT_I2);
  EXPECT_EQ(Get(u"short")->ReadValue(none).Data().llVal, 0);
  EXPECT_EQ(Get(u"int")->ReadValue(none).Tag(), VT_INT);
  EXPECT_EQ(Get(u"int")->ReadValue(none).Data().llVal, 0);
  EXPECT_EQ(Get(u"long")->ReadValue(none).Tag(), VT_EMPTY);
  EXPECT_EQ(Get(u"long")->ReadValue(none).Data().llVal, 0);
  EXPECT_EQ(Get(u"float")->ReadValue(none).Tag(), VT_R4);
  EXPECT_EQ(Get(u"float")->ReadValue(none).Data().llVal, 0);
  EXPECT_EQ(Get(u"double")->ReadValue(none).Tag(), VT_R8);
  EXPECT_EQ(Get(u"double")->ReadValue(none).Data().llVal, 0);
}

// No parser lets a lone surrogate pass, so this document is made by hand.
TEST_F(ScalarFormatersRead, TextWithALoneSurrogateReadsAsZero) {
  const XmlLibraryHold hold;
  xml::DOMDocument* document = xml::DOMImplementation::getImplementation()->createDocument();
  const XmlNode node(document->createTextNode(u"12\xD800"));
  EXPECT_EQ(Get(u"int")->ReadValue(node).Data().intVal, 0);
  EXPECT_EQ(Get(u"short")->ReadValue(node).Data().iVal, 0);
  EXPECT_EQ(Get(u"byte")->ReadValue(node).Data().lVal, 0);
  const char16_t lone[] = u"12\xD800";
  EXPECT_EQ(Get(u"string")->ReadValue(node).Text().view(), std::u16string_view(lone));
  document->release();
}

}  // namespace
}  // namespace qv
