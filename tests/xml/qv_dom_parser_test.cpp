#include "xml/qv_dom_parser.h"

#include <xercesc/framework/MemBufInputSource.hpp>

#include "xml_fixture.h"

namespace qv {
namespace {

class QvDomParserTest : public XmlFixture {};

TEST_F(QvDomParserTest, NothingParsedHasNoDocument) {
  const QvDomParser parser;
  EXPECT_TRUE(parser.Document().IsNull());
}

TEST_F(QvDomParserTest, DocumentIsTheParsedOne) {
  QvDomParser parser;
  parser.ParseHostileText(u"<a/>", "application/xml");
  EXPECT_EQ(parser.Document().NodeType(), 9);
  EXPECT_EQ(parser.Document().FirstChild().Name(), u"a");
}

TEST_F(QvDomParserTest, WhiteSpaceBetweenElementsIsATextNode) {
  EXPECT_EQ(Root(u"<a>\r\n <b/></a>").FirstChild().Value(), u"\n ");
}

TEST_F(QvDomParserTest, CharacterReferencesAndPredefinedNamesJoinTheText) {
  const XmlNode root = Root(u"<a>1&lt;2&#x20AC;&#128512;&amp;&quot;&apos;&gt;</a>");
  EXPECT_EQ(root.FirstChild().Value(), u"1<2\u20AC\U0001F600&\"'>");
  EXPECT_TRUE(root.FirstChild().NextSibling().IsNull());
}

TEST_F(QvDomParserTest, NonAsciiAndSurrogatePairsAreReadAsTheyAre) {
  const XmlNode root =
      Root(u"<\u00E9l\u00E9ment \u00E4='\u4E2D'>\u00FC\u20AC\U0001F600\U0010FFFD</\u00E9l\u00E9ment>");
  EXPECT_EQ(root.Name(), u"\u00E9l\u00E9ment");
  EXPECT_EQ(root.Attribute(u"\u00E4").Value(), u"\u4E2D");
  EXPECT_EQ(root.FirstChild().Value(), u"\u00FC\u20AC\U0001F600\U0010FFFD");
}

TEST_F(QvDomParserTest, ByteOrderMarkInFrontIsLeftOut) {
  EXPECT_EQ(Root(u"\uFEFF<?xml version='1.0'?><a>x</a>").FirstChild().Value(), u"x");
}

TEST_F(QvDomParserTest, ByteOrderMarkInTheTextStays) {
  EXPECT_EQ(Root(u"<a>\uFEFFx</a>").FirstChild().Value(), u"\uFEFFx");
}

TEST_F(QvDomParserTest, LoneSurrogatesReadAsReplacementCharacters) {
  const char16_t text[] = {u'<',   u'a',   u'>', 0xD83D, u'x', 0xDE00, 0xD83D,
                           0xD83D, 0xDE00, u'<', u'/',   u'a', u'>',   0};
  EXPECT_EQ(Root(text).FirstChild().Value(), u"\uFFFDx\uFFFD\uFFFD\U0001F600");
}

// The library reads 24576 units at a time.
TEST_F(QvDomParserTest, SurrogatePairsAcrossReadsStayWhole) {
  for (int ahead = 24570; ahead < 24580; ++ahead) {
    const std::u16string filling = Repeat(u"x", ahead);
    EXPECT_EQ(Root(u"<a>" + filling + u"\U0001F600</a>").FirstChild().Value(), filling + u"\U0001F600")
        << ahead;
  }
}

TEST_F(QvDomParserTest, LoneSurrogatesAcrossReadsAreReplaced) {
  for (int ahead = 24570; ahead < 24580; ++ahead) {
    const std::u16string filling = Repeat(u"x", ahead);
    const std::u16string lone(1, char16_t{0xD83D});
    EXPECT_EQ(Root(u"<a>" + filling + lone + u"</a>").FirstChild().Value(), filling + u"\uFFFD") << ahead;
  }
}

TEST_F(QvDomParserTest, LongTextComesWhole) {
  const std::u16string filling = Repeat(u"0123456789", 100000);
  EXPECT_EQ(Root(u"<a>" + filling + u"</a>").FirstChild().Value(), filling);
}

class QvDomParserEncodingTest : public XmlFixture, public ::testing::WithParamInterface<const char16_t*> {};

TEST_P(QvDomParserEncodingTest, NamedEncodingIsNotBelieved) {
  const std::u16string declaration = std::u16string(u"<?xml version='1.0' encoding='") + GetParam() + u"'?>";
  EXPECT_EQ(Root(declaration + u"<a>\u00FC\u4E2D</a>").FirstChild().Value(), u"\u00FC\u4E2D");
}

INSTANTIATE_TEST_SUITE_P(Names, QvDomParserEncodingTest,
                         ::testing::Values(u"utf-8", u"iso-8859-1", u"utf-16", u"UTF-16BE", u"us-ascii",
                                           u"windows-1252", u"ISO-10646-UCS-4", u"ebcdic-cp-us",
                                           u"no-such-name"));

TEST_F(QvDomParserTest, SyntaxErrorHasIdLineAndColumn) {
  const Refusal refusal = RefusalOf(u"<a>\n<b>\n</a>");
  EXPECT_TRUE(refusal.thrown);
  EXPECT_EQ(refusal.systemId, u"application/xml");
  EXPECT_EQ(refusal.line, 3U);
  EXPECT_EQ(refusal.column, 3U);
  EXPECT_EQ(refusal.message, u"expected end of tag 'b'");
}

TEST_F(QvDomParserTest, UnknownVersionOfXmlIsASyntaxErrorToo) {
  const Refusal refusal = RefusalOf(u"<?xml version='2.0'?><a/>");
  EXPECT_TRUE(refusal.thrown);
  const Refusal almost = RefusalOf(u"<?xml version='1.0RRRR' encoding='utf-8'?><a/>");
  EXPECT_EQ(almost.message, u"The version of XML is not supported.");
  EXPECT_EQ(almost.systemId, u"application/xml");
  EXPECT_EQ(almost.line, 1U);
}

TEST_F(QvDomParserTest, DocumentTypeWithoutLocalNameIsASyntaxErrorToo) {
  const Refusal refusal = RefusalOf(u"\n<!DOCTYPE a: []><a:/>");
  EXPECT_EQ(refusal.message, u"The name of the document type is not valid.");
  EXPECT_EQ(refusal.line, 2U);
}

TEST_F(QvDomParserTest, Version11IsRead) {
  EXPECT_EQ(Root(u"<?xml version='1.1'?><a>x</a>").FirstChild().Value(), u"x");
}

TEST_F(QvDomParserTest, ColumnsCountUnitsNotBytes) {
  const Refusal refusal = RefusalOf(u"<a>\u00FC\u4E2D</b>");
  EXPECT_EQ(refusal.line, 1U);
  EXPECT_EQ(refusal.column, 8U);
}

struct BadText {
  const char* name;
  std::u16string_view text;
};

class QvDomParserBadTextTest : public XmlFixture, public ::testing::WithParamInterface<BadText> {};

TEST_P(QvDomParserBadTextTest, IsRefused) {
  const Refusal refusal = RefusalOf(GetParam().text);
  EXPECT_TRUE(refusal.thrown);
  EXPECT_EQ(refusal.systemId, u"application/xml");
}

INSTANTIATE_TEST_SUITE_P(Texts, QvDomParserBadTextTest,
                         ::testing::Values(BadText{"Empty", u""}, BadText{"BlanksOnly", u"  \n"},
                                           BadText{"ByteOrderMarkOnly", u"\uFEFF"},
                                           BadText{"NoMarkup", u"hello"}, BadText{"CutInTag", u"<a><b"},
                                           BadText{"CutInText", u"<a>tex"}, BadText{"TwoRoots", u"<a/><b/>"},
                                           BadText{"NulInText", std::u16string_view(u"<a>x\0y</a>", 10)},
                                           BadText{"NulInFront", std::u16string_view(u"\0<a/>", 5)},
                                           BadText{"ControlCharacter", u"<a>\u0001</a>"},
                                           BadText{"NonCharacter", u"<a>\uFFFF</a>"},
                                           BadText{"UndeclaredEntity", u"<a>&x;</a>"},
                                           BadText{"AttributeTwice", u"<a b='' b=''/>"},
                                           BadText{"SurrogateReference", u"<a>&#xD800;</a>"},
                                           BadText{"NulReference", u"<a>&#0;</a>"}),
                         [](const ::testing::TestParamInfo<BadText>& row) { return row.param.name; });

TEST_F(QvDomParserTest, WarningDoesNotStopParsing) {
  QvDOMErrorHandlers handler(true);
  handler.resetErrors();
  QvDomParser parser;
  parser.setErrorHandler(&handler);
  // The second declaration of one attribute is worth a warning.
  parser.ParseHostileText(
      u"<!DOCTYPE a [<!ATTLIST a b CDATA #IMPLIED><!ATTLIST a b CDATA #IMPLIED>]><a>read</a>",
      "application/xml");
  EXPECT_TRUE(handler.Flag());
  EXPECT_EQ(GetNodeText(parser.Document().LastChild()), u"read");
}

TEST_F(QvDomParserTest, ErrorGoesThroughTheHandlerThatTheCallerSet) {
  QvDOMErrorHandlers handler(false);
  QvDomParser parser;
  parser.setErrorHandler(&handler);
  EXPECT_THROW(parser.ParseHostileText(u"<a>", "application/xml"), XERCES_CPP_NAMESPACE::SAXParseException);
  EXPECT_TRUE(handler.Flag());
}

TEST_F(QvDomParserTest, ErrorIsThrownAlsoWhenTheHandlerWasTakenAway) {
  QvDomParser parser;
  parser.setErrorHandler(nullptr);
  EXPECT_THROW(parser.ParseHostileText(u"<a>\n</b>", "application/xml"),
               XERCES_CPP_NAMESPACE::SAXParseException);
}

TEST_F(QvDomParserTest, ParseOfTheBaseClassIsStillThere) {
  const char bytes[] = "<a>\xC3\xBC</a>";
  QvDomParser parser;
  parser.parse(XERCES_CPP_NAMESPACE::MemBufInputSource(reinterpret_cast<const XMLByte*>(bytes),
                                                       sizeof bytes - 1, "application/xml", false));
  EXPECT_EQ(GetNodeText(parser.Document().FirstChild()), u"\u00FC");
}

TEST_F(QvDomParserTest, OneParserMayStandInsideTheLifeOfAnother) {
  QvDomParser outer;
  outer.ParseHostileText(u"<a>outer</a>", "application/xml");
  {
    QvDomParser inner;
    inner.ParseHostileText(u"<b>inner</b>", "application/xml");
    EXPECT_EQ(GetNodeText(inner.Document().FirstChild()), u"inner");
  }
  EXPECT_EQ(GetNodeText(outer.Document().FirstChild()), u"outer");
}

bool MayHold(std::u16string_view text, std::u16string_view name) {
  QvDomParser parser;
  parser.ParseHostileText(text, "application/xml");
  return parser.MayHold(name);
}

TEST_F(QvDomParserTest, ElementNamesOfTheDocumentAreKnown) {
  EXPECT_TRUE(MayHold(u"<a><x:b c='d'/></a>", u"a"));
  EXPECT_TRUE(MayHold(u"<a><x:b c='d'/></a>", u"x:b"));
  EXPECT_FALSE(MayHold(u"<a><x:b c='d'/></a>", u"b"));
  EXPECT_FALSE(MayHold(u"<a><x:b c='d'/></a>", u"c"));
  EXPECT_FALSE(MayHold(u"<a><!-- <e/> --><![CDATA[<e/>]]></a>", u"e"));
  EXPECT_FALSE(MayHold(u"<a/>", u""));
}

// Elements may come out of entities there.
TEST_F(QvDomParserTest, DocumentWithATypeMayHoldAnyName) {
  EXPECT_TRUE(MayHold(u"<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>", u"b"));
  EXPECT_TRUE(MayHold(u"<!DOCTYPE a><a/>", u"b"));
}

}  // namespace
}  // namespace qv
