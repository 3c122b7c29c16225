#include "support/wide_text_stream.h"

#include <gtest/gtest.h>

#include <string>

#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

std::u16string Repeated(std::u16string_view piece, std::size_t count) {
  std::u16string text;
  text.reserve(piece.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

struct Escaped {
  std::u16string_view plain;
  std::u16string_view escaped;
};

TEST(EncodeXmlText, FiveCharactersBecomeEntities) {
  const Escaped rows[] = {
      {u"\"", u"&quot;"}, {u"&", u"&amp;"}, {u"'", u"&apos;"}, {u"<", u"&lt;"}, {u">", u"&gt;"}};
  for (const Escaped& row : rows) EXPECT_EQ(EncodeXmlText(WideString(row.plain)).view(), row.escaped);
  EXPECT_EQ(EncodeXmlText(u"a<b>&\"c'").view(), u"a&lt;b&gt;&amp;&quot;c&apos;"sv);
}

TEST(EncodeXmlText, UnitsFromDeleteUpBecomeDecimalReferences) {
  const Escaped rows[] = {
      {u"~", u"~"},
      {u"\x7F", u"&#127;"},
      {u"\u0080", u"&#128;"},
      {u"\u00A0", u"&#160;"},
      {u"\u00E9", u"&#233;"},
      {u"\u00FF", u"&#255;"},
      {u"\u0100", u"&#256;"},
      {u"\u0122", u"&#290;"},   // its low byte is that of the double quote
      {u"\u263C", u"&#9788;"},  // and this one's that of the less-than sign
      {u"\u20AC", u"&#8364;"},
      {u"\uFFFF", u"&#65535;"},
  };
  for (const Escaped& row : rows) EXPECT_EQ(EncodeXmlText(WideString(row.plain)).view(), row.escaped);
}

TEST(EncodeXmlText, SurrogatesAreEscapedOneByOne) {
  EXPECT_EQ(EncodeXmlText(u"\U0001F600").view(), u"&#55357;&#56832;"sv);
  EXPECT_EQ(EncodeXmlText(WideString(u"\xD800"
                                     u"a"sv))
                .view(),
            u"&#55296;a"sv);
  EXPECT_EQ(EncodeXmlText(WideString(u"\xDFFF"sv)).view(), u"&#57343;"sv);
}

TEST(EncodeXmlText, AllOtherUnitsBelowDeleteStay) {
  std::u16string plain;
  for (char16_t unit = 1; unit < 0x7F; ++unit)
    if (unit != u'"' && unit != u'&' && unit != u'\'' && unit != u'<' && unit != u'>') plain += unit;
  EXPECT_EQ(plain.size(), 121u);
  EXPECT_EQ(EncodeXmlText(plain).view(), plain);
}

TEST(EncodeXmlText, ControlCharactersStay) {
  EXPECT_EQ(EncodeXmlText(u"\x01\x0B\x1F\t\r\n").view(), u"\x01\x0B\x1F\t\r\n"sv);
}

TEST(EncodeXmlText, EscapesAreEscapedAgain) {
  EXPECT_EQ(EncodeXmlText(u"&lt;").view(), u"&amp;lt;"sv);
}

TEST(EncodeXmlText, StopsAtTheFirstNullUnit) {
  EXPECT_EQ(EncodeXmlText(WideString(u"a<\0b>"sv)).view(), u"a&lt;"sv);
  EXPECT_EQ(EncodeXmlText(WideString(u"\0abc"sv)).view(), u""sv);
}

TEST(EncodeXmlText, NullAndEmptyGiveAnEmptyTextThatIsNotNull) {
  EXPECT_TRUE(EncodeXmlText(WideString()).IsEmpty());
  EXPECT_FALSE(EncodeXmlText(WideString()).IsNull());
  EXPECT_TRUE(EncodeXmlText(u"").IsEmpty());
  EXPECT_FALSE(EncodeXmlText(u"").IsNull());
  EXPECT_FALSE(EncodeXmlText(WideString(u"\0"sv)).IsNull());
}

TEST(EncodeXmlText, LeavesItsArgument) {
  const WideString text(u"a<b");
  EncodeXmlText(text);
  EXPECT_EQ(text.view(), u"a<b"sv);
}

TEST(EncodeXmlText, HundredThousandAmpersands) {
  const WideString escaped = EncodeXmlText(std::u16string(100000, u'&'));
  EXPECT_EQ(escaped.size(), 500000u);
  EXPECT_TRUE(escaped.view() == Repeated(u"&amp;", 100000));
}

TEST(EncodeXmlText, EveryLengthGrowsAlike) {
  for (std::size_t length = 1; length <= 300; ++length) {
    EXPECT_TRUE(EncodeXmlText(std::u16string(length, u'a')).view() == std::u16string(length, u'a')) << length;
    EXPECT_TRUE(EncodeXmlText(std::u16string(length, u'"')).view() == Repeated(u"&quot;", length)) << length;
    EXPECT_TRUE(EncodeXmlText(std::u16string(length, u'\uFFFF')).view() == Repeated(u"&#65535;", length))
        << length;
    const WideString mixed =
        EncodeXmlText(std::u16string(length, u'a') + u"\uFFFF" + std::u16string(length, u'b'));
    EXPECT_TRUE(mixed.view() == std::u16string(length, u'a') + u"&#65535;" + std::u16string(length, u'b'))
        << length;
  }
}

TEST(EncodeXmlText, PlainTextWithOneEscapeAtEachPlace) {
  for (std::size_t place = 0; place <= 40; ++place) {
    std::u16string plain(40, u'x');
    std::u16string escaped(40, u'x');
    plain.insert(place, u"<");
    escaped.insert(place, u"&lt;");
    EXPECT_EQ(EncodeXmlText(plain).view(), escaped) << place;
  }
}

TEST(EncodeXmlText, NumbersOfReferencesKnowNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(EncodeXmlText(u"\u20AC").view(), u"&#8364;"sv);
}

}  // namespace
}  // namespace qv
