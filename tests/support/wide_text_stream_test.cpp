// One growing text, with escapes on the way.
#include "support/wide_text_stream.h"

#include <gtest/gtest.h>

#include <string>

#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

TEST(WideTextStream, FreshOneIsEmpty) {
  const WideTextStream stream;
  EXPECT_EQ(stream.size(), 0U);
  EXPECT_EQ(stream.view(), u""sv);
}

TEST(WideTextStream, AppendsAsItStands) {
  WideTextStream stream;
  stream.Append(u"<a>");
  stream.Append(u"");
  stream.Append(u"x\0y"sv);
  stream.Append(u"\u00E9\xD800"sv);
  EXPECT_EQ(stream.view(), u"<a>x\0y\u00E9\xD800"sv);
  EXPECT_EQ(stream.size(), 8U);
}

TEST(WideTextStream, ReservedUnitsAreNoText) {
  WideTextStream stream;
  stream.Reserve(1000);
  EXPECT_EQ(stream.size(), 0U);
  stream.Append(u"<a>");
  EXPECT_EQ(stream.TakeText().view(), u"<a>"sv);
  stream.Reserve(1);
  EXPECT_EQ(stream.TakeText().view(), u""sv);
}

TEST(WideTextStream, AppendsEscapedOnceAndTwiceUpToANullUnit) {
  WideTextStream stream;
  stream.AppendEncoded(u"a<b>&\"'~\x7F\u00E9\uFFFF");
  stream.AppendEncoded(u"");
  stream.AppendEncoded(u"<\0>"sv);
  stream.Append(u"|");
  stream.AppendTwiceEncoded(u"a<b>&\"'~\x7F\u00E9\uFFFF");
  stream.AppendTwiceEncoded(u"");
  stream.AppendTwiceEncoded(u"<\0>"sv);
  stream.Append(u"!");
  EXPECT_EQ(
      stream.view(),
      u"a&lt;b&gt;&amp;&quot;&apos;~&#127;&#233;&#65535;&lt;|a&amp;lt;b&amp;gt;&amp;amp;&amp;quot;&amp;apos;~&amp;#127;&amp;#233;&amp;#65535;&amp;lt;!"sv);
}

TEST(WideTextStream, BothEscapesAgreeWithTheEscapeOfTexts) {
  std::u16string all;
  for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) all += static_cast<char16_t>(unit);
  WideTextStream once;
  once.AppendEncoded(all);
  EXPECT_TRUE(once.view() == EncodeXmlText(all).view());
  WideTextStream twice;
  twice.AppendTwiceEncoded(all);
  EXPECT_TRUE(twice.view() == EncodeXmlText(EncodeXmlText(all)).view());
}

TEST(WideTextStream, AttributeIsNamedQuotedAndEscaped) {
  WideTextStream stream;
  stream.Append(u"<a");
  stream.AppendAttribute(u"xmlns:x", u"a\"<&>'\u00E9");
  stream.AppendAttribute(u"empty", u"");
  stream.Append(u"/>");
  EXPECT_EQ(stream.view(), u"<a xmlns:x=\"a&quot;&lt;&amp;&gt;&apos;&#233;\" empty=\"\"/>"sv);
}

TEST(WideTextStream, TakenTextEndsAtTheFirstNullUnit) {
  WideTextStream stream;
  stream.Append(u"ab");
  stream.AppendNull();
  EXPECT_EQ(stream.view(), u"ab\0"sv);
  stream.Append(u"cd");
  stream.AppendNull();
  EXPECT_EQ(stream.TakeText().view(), u"ab"sv);
  stream.Append(u"whole");
  EXPECT_EQ(stream.TakeText().view(), u"whole"sv);
  stream.AppendNull();
  stream.Append(u"x");
  EXPECT_TRUE(stream.TakeText().IsEmpty());
}

TEST(WideTextStream, IsEmptyAfterTheTextIsTaken) {
  WideTextStream stream;
  stream.Append(u"abc");
  const WideString first = stream.TakeText();
  EXPECT_EQ(first.data()[3], u'\0');
  EXPECT_EQ(stream.size(), 0U);
  EXPECT_EQ(stream.view(), u""sv);
  EXPECT_TRUE(stream.TakeText().IsEmpty());
  stream.Append(u"XY");
  EXPECT_EQ(stream.TakeText().view(), u"XY"sv);
  EXPECT_EQ(first.view(), u"abc"sv);
}

TEST(WideTextStream, GrowsThroughEveryLength) {
  WideTextStream stream;
  std::u16string expected;
  for (std::size_t length = 0; length < 600; ++length) {
    stream.Append(std::u16string(length, u'x'));
    stream.AppendEncoded(u"<");
    stream.AppendTwiceEncoded(u"\uFFFF");
    expected += std::u16string(length, u'x') + u"&lt;&amp;#65535;";
  }
  EXPECT_EQ(stream.size(), expected.size());
  EXPECT_TRUE(stream.view() == expected);
  EXPECT_TRUE(stream.TakeText().view() == expected);
}

TEST(WideTextStream, HundredThousandAmpersandsTwice) {
  WideTextStream stream;
  stream.AppendTwiceEncoded(std::u16string(100000, u'&'));
  ASSERT_EQ(stream.size(), 900000U);
  for (std::size_t at = 0; at < 900000; at += 9) ASSERT_EQ(stream.view().substr(at, 9), u"&amp;amp;"sv) << at;
}

}  // namespace
}  // namespace qv
