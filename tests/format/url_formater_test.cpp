// URLs in answers. The texts of both parts are cut out and dropped, so a text shows only in whether it is
// refused.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "format/factory_fixture.h"
#include "format/object_formaters.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

constexpr char16_t kUrlMarks[] = u"<URL>u</URL><C>c</C>";
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
    FormaterUrl formater;
    return ReadContent(&formater, content);
  }
  // A Url object with the value as its only owner, with neither caption nor link.
  static void ExpectFreshUrl(const Variant& value, const std::string& which) {
    ASSERT_EQ(value.Tag(), VT_UNKNOWN) << which;
    ASSERT_NE(value.Object(), nullptr) << which;
    EXPECT_EQ(value.Object()->AddRef(), 2U) << which;
    EXPECT_EQ(value.Object()->Release(), 1U) << which;
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

TEST_F(FormaterUrlTest, IsRegisteredUnderTwoNames) {
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
  ExpectBuilt({kUrlMarks, u"<URL></URL><C></C>", u"<URL>a://b/c</URL><C>caption</C>",
               u"<URL>no link at all</URL><C>c</C>", u"<URL>\u00E9</URL><C>\u4E00</C>",
               u"before<URL>u</URL>between<C>c</C>behind", u"<C>c</C><URL>u</URL>",
               u"<URL>1</URL><URL>2</URL><C>3</C><C>4</C>", u"<URL><C></URL></C>", u"<C><URL></C></URL>"});
}

// Without "<URL>" the link runs from position 4, without "<C>" the caption from position 2. It is refused
// when its end mark is before that.
TEST_F(FormaterUrlTest, MissingOpeningMarkCountsFromAFixedPosition) {
  ExpectBuilt({u"abcd<URL/><C/>", u"abcde<URL/><C>c</C>", u"abcd</URL><C/>", u"<URL</URL><C/>",
               u"<URL >u</URL><C/>"});
  ExpectRefused({u"<URL/><C>c</C>", u"<URL/><C/>", u"abc<URL/><C/>", u"abc</URL><C/>", u"u</URL><C>c</C>"});
  ExpectBuilt({u"<URL>u</URL><C/>", u"<URL>u</URL>c</C>", u"<URL></URL><C</C>", u"xy<C/><URL></URL>",
               u"xy</C><URL></URL>"});
  ExpectRefused({u"<C/><URL></URL>", u"</C><URL></URL>", u"x<C/><URL></URL>", u"x</C><URL></URL>"});
}

TEST_F(FormaterUrlTest, MissingOrEarlyEndMarkIsRefused) {
  ExpectRefused({u"x", u" ", u"a://b/c", u"a text of some length", u"<URL>u<C>c</C>", u"<URL>u",
                 u"<URL>u</URL>", u"<URL>u</URL>caption", u"<URL>u</URL><C>c", u"<C>c</C>", u"<C/>",
                 u"<URL>u</URL ><C/>", u"<URL>u</URL><C />"});
  ExpectRefused({u"</URL><URL>u<C></C>", u"</URL><URL>u</URL><C></C>", u"<URL>u</URL></C><C>c",
                 u"<URL>u</URL></C><C>c</C>"});
}

// The mark of an empty part is looked for first, wherever it is.
TEST_F(FormaterUrlTest, EmptyMarkGoesBeforeAnEndMark) {
  ExpectBuilt({u"<URL>u</URL><URL/><C/>", u"<URL><URL/><C/>", u"<URL>u</URL><C>c<C/></C>",
               u"<URL>u<URL/>v</URL><C></C>"});
  ExpectRefused({u"<URL/><URL>u</URL><C/>", u"<URL>u</URL><C/><C>c</C>"});
}

TEST_F(FormaterUrlTest, MarksAreInCapitals) {
  ExpectRefused({u"<url>u</url><c>c</c>", u"<URL>u</URL><c/>", u"<URL>u</URL><c>c</c>", u"<Url>u</Url><C/>"});
  ExpectBuilt({u"<url>u</URL><c>c</C>"});
}

TEST_F(FormaterUrlTest, TextIsTheFirstTextChildOrTheLastChild) {
  ExpectFreshUrl(Read(u"<![CDATA[<URL>u</URL><C>c</C>]]>"), "CDATA");
  ExpectFreshUrl(Read(u"<b/>" + Escaped(kUrlMarks) + u"<b/>"), "second child");
  EXPECT_EQ(Thrown([] { Read(Escaped(u"<URL>u</URL>") + u"<b/>" + Escaped(u"<C>c</C>")); }), kCannotBuild);
}

TEST_F(FormaterUrlTest, VeryLongTextsAreRead) {
  const std::u16string many(1000000, u'x');
  ExpectFreshUrl(Read(Escaped(u"<URL>" + many + u"</URL><C>" + many + u"</C>")), "long");
  EXPECT_EQ(Thrown([&] { Read(many); }), kCannotBuild);
}

TEST_F(FormaterUrlTest, AnsweredUrlIsAnObject) {
  for (const char16_t* name : {u"sof:url", u"url", u"SOF:URL", u"Url"})
    ExpectFreshUrl(ReadAnswer(name, Escaped(u"<URL>a://b/c</URL><C>c</C>")), Shown(name));
  EXPECT_EQ(ReadAnswer(u"sof:url", u"").Tag(), VT_EMPTY);
  EXPECT_EQ(ReadAnswer(u"xsd:url", Escaped(u"<URL>a://b/c</URL><C>c</C>")).Tag(), VT_EMPTY);
}

TEST_F(FormaterUrlTest, AnsweredBadTextKeepsItsMessage) {
  EXPECT_EQ(Thrown([] { ReadAnswer(u"sof:url", Escaped(u"<URL/><C/>")); }), kCannotBuild);
  EXPECT_EQ(Thrown([] { ReadAnswer(u"url", u"a://b/c"); }), kCannotBuild);
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
