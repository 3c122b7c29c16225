// URLs in answers. The texts of both parts are cut out and dropped, so a text shows only in whether it is
// refused.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "format/object_formaters.h"
#include "format/response_value_reader.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

constexpr char kCannotBuild[] = "EQvException 0x00000000 Cannot build a url object.";

// The "<" of a text that is to arrive as text.
std::u16string Escaped(std::u16string_view text) {
  std::u16string escaped;
  for (const char16_t unit : text) escaped += unit == u'<' ? u"&lt;" : std::u16string(1, unit);
  return escaped;
}

class FormaterUrlTest : public FactoryFixture {
 protected:
  static Variant Read(const std::u16string& content) {
    const XmlText xml(u"<v>" + content + u"</v>");
    return FormaterUrl().ReadValue(xml.Root());
  }
  static Variant Answered(const std::u16string& typeName, const std::u16string& content) {
    const XmlText xml(u"<r><v xsi:type='" + typeName + u"'>" + content + u"</v></r>");
    return ReadResponseValue(xml.Root());
  }
  // A Url object with the value as its only owner, with neither caption nor link.
  static void ExpectFreshUrl(const Variant& value, const std::string& which) {
    ASSERT_EQ(value.Tag(), VT_UNKNOWN) << which;
    ASSERT_NE(value.Object(), nullptr) << which;
    EXPECT_EQ(value.Object()->AddRef(), 2u) << which;
    EXPECT_EQ(value.Object()->Release(), 1u) << which;
    const IUrlPtr url = As<IUrl>(value.Object());
    ASSERT_NE(url, nullptr) << which;
    WideString text(u"before");
    EXPECT_EQ(url->get_UrlCaption(&text), S_OK);
    EXPECT_EQ(Shown(text), "<null>") << which;
    EXPECT_EQ(url->get_Url(&text), S_OK);
    EXPECT_EQ(Shown(text), "") << which;
  }
  static void ExpectBuilt(const std::vector<std::u16string>& texts) {
    for (const std::u16string& text : texts) {
      Variant value;
      EXPECT_EQ(Thrown([&] { value = Read(Escaped(text)); }), "nothing") << Shown(text);
      ExpectFreshUrl(value, Shown(text));
    }
  }
  static void ExpectRefused(const std::vector<std::u16string>& texts) {
    for (const std::u16string& text : texts)
      EXPECT_EQ(Thrown([&] { Read(Escaped(text)); }), kCannotBuild) << Shown(text);
  }
};

TEST_F(FormaterUrlTest, StandsUnderTwoNames) {
  for (const char16_t* name : {u"url", u"sof:url", u"SOF:Url"})
    EXPECT_NE(dynamic_cast<FormaterUrl*>(Get(name)), nullptr) << Shown(name);
  EXPECT_NE(Get(u"url"), Get(u"sof:url"));
  EXPECT_EQ(Get(u"xsd:url"), nullptr);
}

TEST_F(FormaterUrlTest, NoTextIsEmpty) {
  for (const char16_t* content : {u"", u"<b/>", u"<URL>u</URL><C>c</C>", u"<![CDATA[]]>"}) {
    const Variant value = Read(content);
    EXPECT_EQ(value.Tag(), VT_EMPTY) << Shown(content);
    EXPECT_EQ(value.Data().llVal, 0) << Shown(content);
  }
  EXPECT_EQ(FormaterUrl().ReadValue(XmlNode()).Tag(), VT_EMPTY);
}

TEST_F(FormaterUrlTest, BothPartsInTheirMarksGiveAnObject) {
  ExpectBuilt({u"<URL>u</URL><C>c</C>", u"<URL></URL><C></C>", u"<URL>a://b/c</URL><C>caption</C>",
               u"<URL>no link at all</URL><C>c</C>", u"<URL>\u00E9</URL><C>\u4E00</C>",
               u"before<URL>u</URL>between<C>c</C>behind", u"<C>c</C><URL>u</URL>",
               u"<URL>1</URL><URL>2</URL><C>3</C><C>4</C>"});
}

// Without "<URL>" the link runs from position 4, without "<C>" the caption from position 2.
TEST_F(FormaterUrlTest, MissingOpeningMarkCountsFromAFixedPosition) {
  ExpectBuilt({u"abcd<URL/><C/>",        // 4 to 4, 2 to 10
               u"abcde<URL/><C>c</C>",   // 4 to 5
               u"abcd</URL><C/>",        // 4 to 4
               u"<URL</URL><C/>",        // 4 to 4
               u"<URL >u</URL><C/>",     // 4 to 7
               u"<URL>u</URL><C/>",      // 2 to 12
               u"<URL>u</URL>c</C>",     // 2 to 13
               u"<URL></URL><C</C>",     // 2 to 13
               u"xy<C/><URL></URL>",     // 2 to 2
               u"xy</C><URL></URL>"});   // 2 to 2
  ExpectRefused({u"<URL/><C>c</C>",      // 4 to 0
                 u"<URL/><C/>",          // 4 to 0
                 u"abc<URL/><C/>",       // 4 to 3
                 u"abc</URL><C/>",       // 4 to 3
                 u"u</URL><C>c</C>",     // 4 to 1
                 u"<C/><URL></URL>",     // 2 to 0
                 u"</C><URL></URL>",     // 2 to 0
                 u"x<C/><URL></URL>",    // 2 to 1
                 u"x</C><URL></URL>"});  // 2 to 1
}

TEST_F(FormaterUrlTest, MissingEndMarkIsRefused) {
  ExpectRefused({u"x", u" ", u"a://b/c", u"a text of some length", u"<URL>u<C>c</C>", u"<URL>u",
                 u"<URL>u</URL>", u"<URL>u</URL>caption", u"<URL>u</URL><C>c", u"<C>c</C>", u"<C/>",
                 u"<URL>u</URL ><C/>", u"<URL>u</URL><C />"});
}

TEST_F(FormaterUrlTest, EndMarkBeforeItsOpeningMarkIsRefused) {
  ExpectRefused({u"</URL><URL>u<C></C>",         // 11 to 0
                 u"</URL><URL>u</URL><C></C>",   // 11 to 0: the first end mark counts
                 u"<URL>u</URL></C><C>c",        // 19 to 12
                 u"<URL>u</URL></C><C>c</C>"});  // 19 to 12
}

// The mark of an empty part is looked for first, wherever it stands.
TEST_F(FormaterUrlTest, EmptyMarkGoesBeforeAnEndMark) {
  ExpectBuilt({u"<URL>u</URL><URL/><C/>",        // 5 to 12
               u"<URL><URL/><C/>",               // 5 to 5
               u"<URL>u</URL><C>c<C/></C>",      // 15 to 16
               u"<URL>u<URL/>v</URL><C></C>"});  // 5 to 6
  ExpectRefused({u"<URL/><URL>u</URL><C/>",      // 11 to 0
                 u"<URL>u</URL><C/><C>c</C>"});  // 19 to 12
}

TEST_F(FormaterUrlTest, PartsMayOverlap) {
  ExpectBuilt({u"<URL><C></URL></C>", u"<C><URL></C></URL>"});
}

TEST_F(FormaterUrlTest, MarksAreInCapitals) {
  ExpectRefused({u"<url>u</url><c>c</c>", u"<URL>u</URL><c/>", u"<URL>u</URL><c>c</c>", u"<Url>u</Url><C/>"});
  ExpectBuilt({u"<url>u</URL><c>c</C>"});  // 4 to 6, 2 to 16
}

TEST_F(FormaterUrlTest, TextIsTheFirstTextChildOrTheLastChild) {
  ExpectFreshUrl(Read(u"<![CDATA[<URL>u</URL><C>c</C>]]>"), "CDATA");
  ExpectFreshUrl(Read(u"<b/>" + Escaped(u"<URL>u</URL><C>c</C>") + u"<b/>"), "second child");
  EXPECT_EQ(Thrown([] { Read(Escaped(u"<URL>u</URL>") + u"<b/>" + Escaped(u"<C>c</C>")); }), kCannotBuild);
}

TEST_F(FormaterUrlTest, VeryLongTextsAreRead) {
  const std::u16string many(1000000, u'x');
  ExpectFreshUrl(Read(Escaped(u"<URL>" + many + u"</URL><C>" + many + u"</C>")), "long");
  EXPECT_EQ(Thrown([&] { Read(many); }), kCannotBuild);
}

TEST_F(FormaterUrlTest, AnsweredUrlIsAnObject) {
  for (const char16_t* name : {u"sof:url", u"url", u"SOF:URL", u"Url"})
    ExpectFreshUrl(Answered(name, Escaped(u"<URL>a://b/c</URL><C>c</C>")), Shown(name));
  EXPECT_EQ(Answered(u"sof:url", u"").Tag(), VT_EMPTY);
  EXPECT_EQ(Answered(u"xsd:url", Escaped(u"<URL>a://b/c</URL><C>c</C>")).Tag(), VT_EMPTY);
}

TEST_F(FormaterUrlTest, AnsweredBadTextKeepsItsWords) {
  EXPECT_EQ(Thrown([] { Answered(u"sof:url", Escaped(u"<URL/><C/>")); }), kCannotBuild);
  EXPECT_EQ(Thrown([] { Answered(u"url", u"a://b/c"); }), kCannotBuild);
}

TEST_F(FormaterUrlTest, EveryValueIsWrittenEmpty) {
  const IUrlPtr url = CreateUrl();
  EXPECT_EQ(url->put_Url(u"a://b/c"), S_OK);
  EXPECT_EQ(url->put_UrlCaption(u"caption"), S_OK);
  for (const Variant& value : {Variant::FromObject(url.get()), Variant::FromObject(nullptr), Variant(),
                               Variant::Null(), Variant::FromString(u"a://b/c"), Variant::FromInt(5)}) {
    EXPECT_EQ(Shown(FormaterUrl().WriteValue(value)), "") << value.Tag();
  }
}

}  // namespace
}  // namespace qv
