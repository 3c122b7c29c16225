// What the parser reads from sound texts, and what it reports about others.
#include "xml/qv_dom_parser.h"

#include <xercesc/framework/MemBufInputSource.hpp>

#include "xml_fixture.h"

namespace qv {
namespace {

class QvDomParserTest : public XmlFixture {};

TEST_F(QvDomParserTest, DocumentIsTheParsedOne) {
  QvDomParser parser;
  EXPECT_TRUE(parser.Document().IsNull());
  parser.ParseHostileText(u"<a/>", "application/xml");
  EXPECT_EQ(parser.Document().NodeType(), 9);
  EXPECT_EQ(parser.Document().FirstChild().Name(), u"a");
}

// White space between elements is a text, references join theirs, a byte order mark in front is left out, and
// a lone surrogate becomes the replacement character.
TEST_F(QvDomParserTest, TextsAreReadWhole) {
  const char16_t lone[] = {u'<',   u'a',   u'>', 0xD83D, u'x', 0xDE00, 0xD83D,
                           0xD83D, 0xDE00, u'<', u'/',   u'a', u'>',   0};
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"<a>\r\n <b/></a>", u"\n "},
      {u"<a>1&lt;2&#x20AC;&#128512;&amp;&quot;&apos;&gt;</a>", u"1<2\u20AC\U0001F600&\"'>"},
      {u"\uFEFF<?xml version='1.0'?><a>x</a>", u"x"},
      {u"<a>\uFEFFx</a>", u"\uFEFFx"},
      {u"<?xml version='1.1'?><a>x</a>", u"x"},
      {lone, u"\uFFFDx\uFFFD\uFFFD\U0001F600"}};
  for (const auto& [text, value] : rows) EXPECT_EQ(FirstValue(text), value) << Start(text);
  EXPECT_TRUE(Root(u"<a>1&lt;2</a>").FirstChild().NextSibling().IsNull());
}

TEST_F(QvDomParserTest, NonAsciiAndSurrogatePairsAreReadAsTheyAre) {
  const XmlNode root =
      Root(u"<\u00E9l\u00E9ment \u00E4='\u4E2D'>\u00FC\u20AC\U0001F600\U0010FFFD</\u00E9l\u00E9ment>");
  EXPECT_EQ(root.Name(), u"\u00E9l\u00E9ment");
  EXPECT_EQ(root.Attribute(u"\u00E4").Value(), u"\u4E2D");
  EXPECT_EQ(root.FirstChild().Value(), u"\u00FC\u20AC\U0001F600\U0010FFFD");
}

// The library reads 24576 units at a time.
TEST_F(QvDomParserTest, SurrogatesAcrossReadsAreAsInOne) {
  for (int ahead = 24570; ahead < 24580; ++ahead) {
    const std::u16string filling = Repeat(u"x", ahead);
    EXPECT_EQ(FirstValue(u"<a>" + filling + u"\U0001F600</a>"), filling + u"\U0001F600") << ahead;
    EXPECT_EQ(FirstValue(u"<a>" + filling + u"\xD83D</a>"), filling + u"\uFFFD") << ahead;
  }
  const std::u16string filling = Repeat(u"0123456789", 100000);
  EXPECT_EQ(FirstValue(u"<a>" + filling + u"</a>"), filling);
}

TEST_F(QvDomParserTest, NamedEncodingIsNotBelieved) {
  for (const char16_t* name : {u"utf-8", u"iso-8859-1", u"utf-16", u"UTF-16BE", u"us-ascii", u"windows-1252",
                               u"ISO-10646-UCS-4", u"ebcdic-cp-us", u"no-such-name"})
    EXPECT_EQ(
        FirstValue(std::u16string(u"<?xml version='1.0' encoding='") + name + u"'?><a>\u00FC\u4E2D</a>"),
        u"\u00FC\u4E2D")
        << Shown(name);
}

// Columns count units, not bytes.
TEST_F(QvDomParserTest, SyntaxErrorHasIdLineColumnAndMessage) {
  ExpectRefusedAt(u"<a>\n<b>\n</a>", 3, 3);
  ExpectMessage(u"<a>\n<b>\n</a>", u"expected end of tag 'b'");
  ExpectRefusedAt(u"<a>\u00FC\u4E2D</b>", 1, 8);
  ExpectRefused(u"<?xml version='2.0'?><a/>");
  const struct {
    const char16_t* text;
    const char16_t* message;
    unsigned long long line;
  } rows[] = {{u"<?xml version='1.0RRRR' encoding='utf-8'?><a/>", u"The version of XML is not supported.", 1},
              {u"\n<!DOCTYPE a: []><a:/>", u"The name of the document type is not valid.", 2}};
  for (const auto& row : rows) {
    const Refusal refusal = RefusalOf(row.text);
    EXPECT_EQ(refusal.message, row.message);
    EXPECT_EQ(refusal.systemId, u"application/xml");
    EXPECT_EQ(refusal.line, row.line);
  }
}

TEST_F(QvDomParserTest, BadTextsAreRefused) {
  using namespace std::literals::string_view_literals;
  for (const std::u16string_view text :
       {u""sv, u"  \n"sv, u"\uFEFF"sv, u"hello"sv, u"<a><b"sv, u"<a>tex"sv, u"<a/><b/>"sv, u"<a>x\0y</a>"sv,
        u"\0<a/>"sv, u"<a>\u0001</a>"sv, u"<a>\uFFFF</a>"sv, u"<a>&x;</a>"sv, u"<a b='' b=''/>"sv,
        u"<a>&#xD800;</a>"sv, u"<a>&#0;</a>"sv}) {
    const Refusal refusal = RefusalOf(text);
    EXPECT_TRUE(refusal.thrown) << Start(text);
    EXPECT_EQ(refusal.systemId, u"application/xml") << Start(text);
  }
}

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

TEST_F(QvDomParserTest, OneParserMayLiveInsideTheLifeOfAnother) {
  QvDomParser outer;
  outer.ParseHostileText(u"<a>outer</a>", "application/xml");
  {
    QvDomParser inner;
    inner.ParseHostileText(u"<b>inner</b>", "application/xml");
    EXPECT_EQ(GetNodeText(inner.Document().FirstChild()), u"inner");
  }
  EXPECT_EQ(GetNodeText(outer.Document().FirstChild()), u"outer");
}

// Elements may come out of entities in a document with a type.
TEST_F(QvDomParserTest, ElementNamesOfTheDocumentAreKnown) {
  const struct {
    const char16_t* text;
    const char16_t* name;
    bool mayHold;
  } rows[] = {{u"<a><x:b c='d'/></a>", u"a", true},
              {u"<a><x:b c='d'/></a>", u"x:b", true},
              {u"<a><x:b c='d'/></a>", u"b", false},
              {u"<a><x:b c='d'/></a>", u"c", false},
              {u"<a><!-- <e/> --><![CDATA[<e/>]]></a>", u"e", false},
              {u"<a/>", u"", false},
              {u"<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;</a>", u"b", true},
              {u"<!DOCTYPE a><a/>", u"b", true}};
  for (const auto& row : rows) {
    QvDomParser parser;
    parser.ParseHostileText(row.text, "application/xml");
    EXPECT_EQ(parser.MayHold(row.name), row.mayHold) << Start(row.text) << " " << Shown(row.name);
  }
}

}  // namespace
}  // namespace qv
