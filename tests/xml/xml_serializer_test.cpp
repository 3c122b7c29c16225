// Elements, attributes and text, and what no document should be able to upset.
#include "xml/xml_serializer.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "serializer_fixture.h"

namespace qv {
namespace {

class XmlSerializer : public SerializerFixture {
 protected:
  void ExpectText(const char16_t* text, const std::string& line) {
    ExpectLine(document_->createTextNode(text), line);
  }
  void ExpectAttribute(const char16_t* value, const std::string& written) {
    ExpectLine(WithAttribute(value), "<r a=\"" + written + "\"/>");
  }
  // Too long to be shown.
  static void ExpectLongLine(const xercesc::DOMNode* node, const std::string& line) {
    EXPECT_TRUE(Written(node) == line + "\\u000A");
  }
};

std::string Repeat(const std::string& piece, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += piece;
  return all;
}

// An empty text is a child, white space stays, and the name is the qualified one.
TEST_F(XmlSerializer, ElementWithoutChildrenClosesItself) {
  ExpectLine(Element(u"r"), "<r/>");
  ExpectLine(ParsedElement("<r></r>"), "<r/>");
  ExpectLine(Element(u"r", u""), "<r></r>");
  ExpectLine(ParsedElement("<r>\n\t<a/> \n</r>"), R"(<r>\u000A\u0009<a/> \u000A</r>)");
  xercesc::DOMElement* element = document_->createElementNS(u"urn:n", u"p:r");
  element->setAttributeNS(u"urn:n", u"p:a", u"1");
  ExpectLine(element, "<p:r p:a=\"1\"/>");
}

TEST_F(XmlSerializer, ChildrenAreInTheirOrder) {
  xercesc::DOMElement* root = Element(u"r", u"one");
  xercesc::DOMElement* inner = Element(u"a");
  inner->appendChild(Element(u"b", u"two"));
  inner->appendChild(Element(u"c"));
  root->appendChild(inner);
  root->appendChild(document_->createTextNode(u"three"));
  root->appendChild(document_->createTextNode(u"four"));
  root->appendChild(Element(u"d", u"five"));
  ExpectLine(root, "<r>one<a><b>two</b><c/></a>threefour<d>five</d></r>");
}

TEST_F(XmlSerializer, NothingBesideOrAboveTheNodeIsWritten) {
  xercesc::DOMElement* root = Element(u"r", u"before");
  xercesc::DOMElement* middle = Element(u"m", u"text");
  xercesc::DOMElement* leaf = Element(u"leaf");
  root->appendChild(middle);
  root->appendChild(leaf);
  root->appendChild(document_->createTextNode(u"after"));
  document_->appendChild(root);
  ExpectLine(middle, "<m>text</m>");
  ExpectLine(leaf, "<leaf/>");
  ExpectLine(middle->getFirstChild(), "text");
}

// The library keeps attributes sorted by name.
TEST_F(XmlSerializer, AttributesAreInTheOrderOfTheirMapBeforeTheContent) {
  xercesc::DOMElement* element = Element(u"r", u"t");
  for (const char16_t* name : {u"b", u"xsi:schemaLocation", u"xmlns", u"a", u"xmlns:xsi", u"Language"})
    element->setAttribute(name, u"v");
  ExpectLine(element, R"(<r Language="v" a="v" b="v" xmlns="v" xmlns:xsi="v" xsi:schemaLocation="v">t</r>)");
}

TEST_F(XmlSerializer, MarkupAndReturnsInTextBecomeReferences) {
  ExpectText(u"a&b<c>d", "a&amp;b&lt;c&gt;d");
  ExpectText(u"]]>", "]]&gt;");
  ExpectText(u"&amp;", "&amp;amp;");
  ExpectText(u"\"'\t\n", R"("'\u0009\u000A)");
  ExpectText(u"a\r\nb", "a&#xD;\\u000Ab");
  ExpectText(u"\x01\x7F\x85", R"(\u0001\u007F\u00C2\u0085)");
}

TEST_F(XmlSerializer, MarkupQuotesAndLineEndsInAnAttributeBecomeReferences) {
  ExpectAttribute(u"a\"b<c&d", "a&quot;b&lt;c&amp;d");
  ExpectAttribute(u"a>b'c", "a>b'c");
  ExpectAttribute(u"1\n2\t3\r", "1&#xA;2&#x9;3&#xD;");
  ExpectAttribute(u"", "");
}

TEST_F(XmlSerializer, EachByteOfUtf8IsAUnit) {
  ExpectText(u"\u00E9", "\\u00C3\\u00A9");
  ExpectText(u"\u20AC", R"(\u00E2\u0082\u00AC)");
  ExpectText(u"\U0001F600", R"(\u00F0\u009F\u0098\u0080)");
  ExpectAttribute(u"\u00E9\U0001F600", R"(\u00C3\u00A9\u00F0\u009F\u0098\u0080)");
  ExpectLine(Element(u"\u00E9", u"x"), R"(<\u00C3\u00A9>x</\u00C3\u00A9>)");
  CXMLSerializer serializer;
  EXPECT_EQ(serializer.Serialize(XmlNode(document_->createTextNode(u"\u00E9\U0001F600"))).size(), 7U);
}

// The library's formatter works in blocks of 16384 units.
TEST_F(XmlSerializer, PairAtAnyPlaceIsOneCharacter) {
  for (int units = 16380; units <= 16388; ++units) {
    const std::u16string text = std::u16string(static_cast<std::size_t>(units), u'a') + u"\U0001F600z";
    SCOPED_TRACE(units);
    ExpectLongLine(document_->createTextNode(text.c_str()),
                   Repeat("a", units) + R"(\u00F0\u009F\u0098\u0080z)");
  }
}

// The library's formatter never comes back from the first of these.
TEST_F(XmlSerializer, LoneSurrogateFails) {
  for (const char16_t* text : {u"a\xD800", u"\xD800", u"\xD800z", u"\xD800\xD800", u"\xDC00", u"a\xDC00z",
                               u"\xDC00\xD800", u"\U0001F600\xDE00", u"\xD83D\U0001F600"}) {
    SCOPED_TRACE(Shown(text));
    for (const xercesc::DOMNode* node : std::initializer_list<const xercesc::DOMNode*>{
             document_->createTextNode(text), WithAttribute(text), document_->createCDATASection(text),
             document_->createComment(text), document_->createProcessingInstruction(u"p", text)})
      ExpectFailure(node);
  }
  xercesc::DOMElement* torn = Element(u"r", u"\xD83D");
  torn->appendChild(document_->createTextNode(u"\xDE00"));
  ExpectFailure(torn);
}

TEST_F(XmlSerializer, EarlierResultOutlivesTheNextRunAndTheObject) {
  WideString first;
  {
    CXMLSerializer serializer;
    const XmlNode node(Element(u"first"));
    first = serializer.Serialize(node);
    EXPECT_EQ(Shown(serializer.Serialize(node)), "<first/>\\u000A");
    EXPECT_EQ(Shown(serializer.Serialize(XmlNode(Element(u"b")))), "<b/>\\u000A");
  }
  EXPECT_EQ(Shown(first), "<first/>\\u000A");
}

TEST_F(XmlSerializer, NothingOfAFailedRunIsKept) {
  xercesc::DOMElement* broken = Element(u"r", u"much text before the failure");
  broken->appendChild(Nested(3, document_->createTextNode(u"a\xD800")));
  broken->appendChild(Element(u"behind"));
  CXMLSerializer serializer;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Thrown([&] { serializer.Serialize(XmlNode(broken)); }), kSerializationFailed);
    EXPECT_EQ(Thrown([&] { serializer.Serialize(XmlNode()); }), kSerializationFailed);
    EXPECT_EQ(Shown(serializer.Serialize(XmlNode(Element(u"r", u"x")))), "<r>x</r>\\u000A");
  }
}

TEST_F(XmlSerializer, DeepWideAndLongTreesAreWrittenWhole) {
  constexpr int kMany = 100000;
  ExpectLongLine(Nested(kMany, document_->createTextNode(u"x")),
                 Repeat("<a>", kMany) + "x" + Repeat("</a>", kMany));
  ExpectFailure(Nested(kMany, document_->createTextNode(u"\xDC00")));
  xercesc::DOMElement* root = Element(u"r");
  for (int i = 0; i < kMany; ++i) root->appendChild(Element(u"a", u"&"));
  ExpectLongLine(root, "<r>" + Repeat("<a>&amp;</a>", kMany) + "</r>");
  const std::u16string text(3'000'000, u'x');
  ExpectLongLine(Element(u"r", text.c_str()), "<r>" + std::string(3'000'000, 'x') + "</r>");
  const std::u16string less(300'000, u'<');
  const std::string references = Repeat("&lt;", 300'000);
  ExpectLongLine(document_->createTextNode(less.c_str()), references);
  ExpectLongLine(WithAttribute(less.c_str()), "<r a=\"" + references + "\"/>");
}

}  // namespace
}  // namespace qv
