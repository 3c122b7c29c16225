// What the formaters of numbers, booleans and strings read.
#include <cmath>
#include <initializer_list>
#include <limits>

#include <xercesc/dom/DOM.hpp>

#include "fixtures/shown_value.h"
#include "fixtures/variant_makers.h"
#include "format/factory_fixture.h"
#include "format/scalar_formaters.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

namespace xml = XERCES_CPP_NAMESPACE;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class ScalarFormatersRead : public FactoryFixture {
 protected:
  // The content of <v>...</v>, read by the formater of a type.
  static Variant Read(const char16_t* typeName, const std::u16string& content) {
    return ReadContent(Get(typeName), content);
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

  // All bytes count, also those that the tag leaves unused.
  static void ExpectValue(const Variant& value, const Variant& expected, const char16_t* content) {
    EXPECT_EQ(value.Tag(), expected.Tag()) << Shown(content);
    EXPECT_EQ(value.Data().llVal, expected.Data().llVal) << Shown(content) << ": " << ShownValue(value);
  }
  static void ExpectRead(const char16_t* typeName, const Variant& expected,
                         std::initializer_list<const char16_t*> contents) {
    for (const char16_t* content : contents) ExpectValue(Read(typeName, content), expected, content);
  }
};

TEST_F(ScalarFormatersRead, BooleanIsTrueForTwoSpellingsOnly) {
  ExpectRead(u"boolean", Bool(true), {u"1", u"true", u"<![CDATA[true]]>"});
  ExpectRead(u"boolean", Bool(false),
             {u"0", u"false", u"", u"yes", u"True", u"TRUE", u"-1", u"01", u"11", u"1.0", u" 1", u"1 ",
              u" true", u"true\n", u"<b>true</b>"});
}

TEST_F(ScalarFormatersRead, ByteOfAnElementIsZero) {
  ExpectRead(u"byte", I1(0), {u"", u"5", u"-1", u"<b>5</b>", u"<![CDATA[5]]>"});
}

TEST_F(ScalarFormatersRead, ByteOfATextNodeIsItsNumberInThirtyTwoBits) {
  const std::pair<const char16_t*, std::int32_t> rows[] = {
      {u"5", 5},         {u"-1", -1},        {u" 12abc", 12}, {u"300", 300},
      {u"70000", 70000}, {u"4294967301", 5}, {u"abc", 0}};
  for (const auto& [content, number] : rows) {
    const Variant value = ReadTextNode(u"byte", content);
    EXPECT_EQ(value.Tag(), VT_I1);
    EXPECT_EQ(value.Data().lVal, number) << Shown(content);
  }
  EXPECT_EQ(ReadTextNode(u"byte", u"300").Data().cVal, 44);
  EXPECT_EQ(ReadAttribute(u"byte", u"7").Data().cVal, 7);
}

TEST_F(ScalarFormatersRead, ShortIsCutToSixteenBits) {
  const std::pair<const char16_t*, std::int16_t> rows[] = {
      {u"5", 5},     {u"-5", -5},        {u"32767", 32767},  {u"32768", -32768}, {u"65535", -1},
      {u"65536", 0}, {u"70000", 4464},   {u"-70000", -4464}, {u" 12abc", 12},    {u"abc", 0},
      {u"", 0},      {u"4294967301", 5}, {u"-1", -1}};
  for (const auto& [content, number] : rows) ExpectRead(u"short", I2(number), {content});
}

TEST_F(ScalarFormatersRead, IntIsWhatAtoiMakesOfIt) {
  const std::pair<const char16_t*, std::int32_t> rows[] = {
      {u"-5", -5},         {u"3.99", 3},       {u"2147483647", 2147483647}, {u"-1", -1},
      {u"4294967295", -1}, {u"7<b>8</b>9", 7}, {u"<b>8</b>9", 9},           {u"<![CDATA[8]]>", 8}};
  for (const auto& [content, number] : rows) ExpectRead(u"int", Int(number), {content});
  ExpectRead(u"int", Int(0), {u"abc", u"", u"-", u"0x10", u"\uFF11", u"<b>8</b>"});
  ExpectRead(u"int", Int(1), {u"1,000", u"1e3", u"18446744073709551617"});
  ExpectRead(u"int", Int(5), {u"5", u"+5", u" \t\n5"});
  ExpectRead(u"int", Int(12), {u"12abc", u"12\u00E9", u"12&#x1F600;"});
  ExpectRead(u"int", Int(INT32_MIN), {u"-2147483648", u"2147483648"});
  EXPECT_EQ(ReadAttribute(u"int", u"7").Data().intVal, 7);
  EXPECT_EQ(ReadTextNode(u"int", u"7").Data().intVal, 7);
}

TEST_F(ScalarFormatersRead, LongIsThirtyTwoBitsWidenedAndHasNoTag) {
  const std::pair<const char16_t*, std::int64_t> rows[] = {
      {u"5", 5},   {u"-5", -5}, {u"2147483647", 2147483647}, {u"2147483648", INT32_MIN},
      {u"abc", 0}, {u"", 0},    {u"4294967301", 5},          {u"-4294967301", -5}};
  for (const auto& [content, number] : rows) ExpectRead(u"long", Raw(VT_EMPTY, number), {content});
}

TEST_F(ScalarFormatersRead, DoubleIsWhatAtofMakesOfIt) {
  const std::pair<const char16_t*, double> rows[] = {{u"3.14", 3.14},
                                                     {u" -2.5e3xyz", -2500.0},
                                                     {u"abc", 0.0},
                                                     {u"", 0.0},
                                                     {u"1,5", 1.0},
                                                     {u"1e400", kInfinity},
                                                     {u"INF", kInfinity},
                                                     {u"-INF", -kInfinity},
                                                     {u"0x1p4", 16.0},
                                                     {u".5", 0.5},
                                                     {u"<![CDATA[2.5]]>", 2.5}};
  for (const auto& [content, number] : rows) ExpectRead(u"double", R8(number), {content});
  ExpectRead(u"double", R8(0.30000000000000004), {u"0.30000000000000004"});
  EXPECT_TRUE(std::isnan(Read(u"double", u"NaN").Data().dblVal));
}

TEST_F(ScalarFormatersRead, FloatIsNarrowedToThirtyTwoBits) {
  const std::pair<const char16_t*, float> rows[] = {
      {u"0.1", 0.1F}, {u"1", 1.0F}, {u"-2.5x", -2.5F}, {u"abc", 0.0F}, {u"1e-60", 0.0F}};
  for (const auto& [content, number] : rows) ExpectRead(u"float", R4(number), {content});
  const float infinity = std::numeric_limits<float>::infinity();
  ExpectRead(u"float", R4(infinity), {u"1e39"});
  ExpectRead(u"float", R4(-infinity), {u"-1e400"});
  EXPECT_TRUE(std::isnan(Read(u"float", u"nan").Data().fltVal));
}

// An element itself has no value, so "" without a text child.
TEST_F(ScalarFormatersRead, StringIsTheFirstText) {
  const std::pair<const char16_t*, std::u16string_view> rows[] = {{u"abc", u"abc"},
                                                                  {u"  a b\n", u"  a b\n"},
                                                                  {u"a&lt;b&#233;&amp;", u"a<b\u00E9&"},
                                                                  {u"\u0416&#x1F600;", u"\u0416\U0001F600"},
                                                                  {u"first<b/>second", u"first"},
                                                                  {u"<b>inner</b>outer", u"outer"},
                                                                  {u"", u""},
                                                                  {u"<b>inner</b>", u""},
                                                                  {u"<![CDATA[data]]>", u""}};
  for (const auto& [content, text] : rows) {
    const Variant value = Read(u"string", content);
    EXPECT_EQ(value.Tag(), VT_BSTR);
    EXPECT_EQ(value.Text().view(), text) << Shown(content);
    EXPECT_FALSE(value.Text().IsNull()) << Shown(content);
  }
  EXPECT_EQ(ReadTextNode(u"string", u"abc").Text(), u"abc");
  EXPECT_EQ(ReadAttribute(u"string", u"abc").Text(), u"abc");
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
  const std::pair<const char16_t*, VARTYPE> rows[] = {
      {u"boolean", VT_BOOL}, {u"byte", VT_I1},  {u"short", VT_I2}, {u"int", VT_INT},
      {u"long", VT_EMPTY},   {u"float", VT_R4}, {u"double", VT_R8}};
  for (const auto& [name, tag] : rows) ExpectValue(Get(name)->ReadValue(none), Raw(tag, 0), name);
}

// Parsers reject a lone surrogate, so the test builds this document itself.
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
