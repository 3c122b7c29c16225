// The XML escape of texts.
#include "support/wide_text_stream.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

std::u16string Repeated(std::u16string_view piece, std::size_t count) {
  std::u16string text;
  text.reserve(piece.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

// The low byte of U+0122 is that of the double quote, of U+263C that of the less-than sign.
TEST(EncodeXmlText, FiveCharactersBecomeEntitiesAndUnitsFromDeleteUpReferences) {
  using Row = std::pair<std::u16string_view, std::u16string_view>;
  const Row rows[] = {{u"\"", u"&quot;"},
                      {u"&", u"&amp;"},
                      {u"'", u"&apos;"},
                      {u"<", u"&lt;"},
                      {u">", u"&gt;"},
                      {u"~", u"~"},
                      {u"\x7F", u"&#127;"},
                      {u"\u0080", u"&#128;"},
                      {u"\u00A0", u"&#160;"},
                      {u"\u00E9", u"&#233;"},
                      {u"\u00FF", u"&#255;"},
                      {u"\u0100", u"&#256;"},
                      {u"\u0122", u"&#290;"},
                      {u"\u263C", u"&#9788;"},
                      {u"\u20AC", u"&#8364;"},
                      {u"\uFFFF", u"&#65535;"},
                      {u"&lt;", u"&amp;lt;"},
                      {u"\xD800z"sv, u"&#55296;z"},
                      {u"\xDFFF"sv, u"&#57343;"},
                      {u"a<\0b>"sv, u"a&lt;"},
                      {u"\0abc"sv, u""}};
  for (const auto& [plain, escaped] : rows) EXPECT_EQ(EncodeXmlText(WideString(plain)).view(), escaped);
  EXPECT_EQ(EncodeXmlText(u"\U0001F600").view(), u"&#55357;&#56832;"sv);
  EXPECT_EQ(EncodeXmlText(u"a<b>&\"c'").view(), u"a&lt;b&gt;&amp;&quot;c&apos;"sv);
}

TEST(EncodeXmlText, AllOtherUnitsBelowDeleteStay) {
  std::u16string plain;
  for (char16_t unit = 1; unit < 0x7F; ++unit)
    if (u"\"&'<>"sv.find(unit) == std::u16string_view::npos) plain += unit;
  EXPECT_EQ(plain.size(), 121U);
  EXPECT_EQ(EncodeXmlText(plain).view(), plain);
  EXPECT_EQ(EncodeXmlText(u"\x01\x0B\x1F\t\r\n").view(), u"\x01\x0B\x1F\t\r\n"sv);
}

TEST(EncodeXmlText, NullAndEmptyGiveAnEmptyTextThatIsNotNull) {
  for (const WideString& text : {WideString(), WideString(u""), WideString(u"\0"sv)}) {
    EXPECT_TRUE(EncodeXmlText(text).IsEmpty());
    EXPECT_FALSE(EncodeXmlText(text).IsNull());
  }
}

TEST(EncodeXmlText, LeavesItsArgument) {
  const WideString text(u"a<b");
  EncodeXmlText(text);
  EXPECT_EQ(text.view(), u"a<b"sv);
}

TEST(EncodeXmlText, HundredThousandAmpersands) {
  const WideString escaped = EncodeXmlText(std::u16string(100000, u'&'));
  EXPECT_EQ(escaped.size(), 500000U);
  EXPECT_TRUE(escaped.view() == Repeated(u"&amp;", 100000));
}

TEST(EncodeXmlText, EveryLengthGrowsAlike) {
  for (std::size_t length = 1; length <= 300; ++length) {
    const auto expectEscaped = [length](const std::u16string& plain, const std::u16string& escaped) {
      EXPECT_TRUE(EncodeXmlText(plain).view() == escaped) << length;
    };
    const std::u16string a(length, u'a');
    const std::u16string b(length, u'b');
    expectEscaped(a, a);
    expectEscaped(std::u16string(length, u'"'), Repeated(u"&quot;", length));
    expectEscaped(std::u16string(length, u'\uFFFF'), Repeated(u"&#65535;", length));
    expectEscaped(std::u16string(a).append(u"\uFFFF").append(b),
                  std::u16string(a).append(u"&#65535;").append(b));
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
