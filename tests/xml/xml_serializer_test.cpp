// Elements, attributes and text, and what no document should be able to upset.
#include "xml/xml_serializer.h"

#include <gtest/gtest.h>

#include <string>

#include "serializer_fixture.h"

namespace qv {
namespace {

class XmlSerializer : public SerializerFixture {
 protected:
  std::string TextWritten(const char16_t* text) { return Written(document_->createTextNode(text)); }
};

std::string Repeat(const std::string& piece, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += piece;
  return all;
}

TEST_F(XmlSerializer, ElementWithoutChildrenClosesItself) {
  EXPECT_EQ(Written(Element(u"r")), "<r/>\\u000A");
  EXPECT_EQ(Written(Parsed("<r></r>")->getDocumentElement()), "<r/>\\u000A");
}

TEST_F(XmlSerializer, EmptyTextIsAChildAllTheSame) {
  EXPECT_EQ(Written(Element(u"r", u"")), "<r></r>\\u000A");
}

TEST_F(XmlSerializer, NameIsTheQualifiedOne) {
  xercesc::DOMElement* element = document_->createElementNS(u"urn:n", u"p:r");
  element->setAttributeNS(u"urn:n", u"p:a", u"1");
  EXPECT_EQ(Written(element), "<p:r p:a=\"1\"/>\\u000A");
}

TEST_F(XmlSerializer, ChildrenStandInTheirOrder) {
  xercesc::DOMElement* root = Element(u"r", u"one");
  xercesc::DOMElement* inner = Element(u"a");
  inner->appendChild(Element(u"b", u"two"));
  inner->appendChild(Element(u"c"));
  root->appendChild(inner);
  root->appendChild(document_->createTextNode(u"three"));
  root->appendChild(document_->createTextNode(u"four"));
  root->appendChild(Element(u"d", u"five"));
  EXPECT_EQ(Written(root), "<r>one<a><b>two</b><c/></a>threefour<d>five</d></r>\\u000A");
}

TEST_F(XmlSerializer, NothingBesideOrAboveTheNodeIsWritten) {
  xercesc::DOMElement* root = Element(u"r", u"before");
  xercesc::DOMElement* middle = Element(u"m", u"text");
  xercesc::DOMElement* leaf = Element(u"leaf");
  root->appendChild(middle);
  root->appendChild(leaf);
  root->appendChild(document_->createTextNode(u"after"));
  document_->appendChild(root);
  EXPECT_EQ(Written(middle), "<m>text</m>\\u000A");
  EXPECT_EQ(Written(leaf), "<leaf/>\\u000A");
  EXPECT_EQ(Written(middle->getFirstChild()), "text\\u000A");
}

TEST_F(XmlSerializer, WhiteSpaceIsWrittenAsItStands) {
  EXPECT_EQ(Written(Parsed("<r>\n\t<a/> \n</r>")->getDocumentElement()),
            "<r>\\u000A\\u0009<a/> \\u000A</r>\\u000A");
}

// The library keeps attributes sorted by name.
TEST_F(XmlSerializer, AttributesStandInTheOrderOfTheirMap) {
  xercesc::DOMElement* element = Element(u"r");
  for (const char16_t* name : {u"b", u"xsi:schemaLocation", u"xmlns", u"a", u"xmlns:xsi", u"Language"})
    element->setAttribute(name, u"v");
  EXPECT_EQ(
      Written(element),
      "<r Language=\"v\" a=\"v\" b=\"v\" xmlns=\"v\" xmlns:xsi=\"v\" xsi:schemaLocation=\"v\"/>\\u000A");
}

TEST_F(XmlSerializer, AttributesStandBeforeTheContent) {
  xercesc::DOMElement* element = WithAttribute(u"1");
  element->appendChild(document_->createTextNode(u"t"));
  EXPECT_EQ(Written(element), "<r a=\"1\">t</r>\\u000A");
}

TEST_F(XmlSerializer, MarkupInTextBecomesReferences) {
  EXPECT_EQ(TextWritten(u"a&b<c>d"), "a&amp;b&lt;c&gt;d\\u000A");
  EXPECT_EQ(TextWritten(u"]]>"), "]]&gt;\\u000A");
  EXPECT_EQ(TextWritten(u"&amp;"), "&amp;amp;\\u000A");
}

TEST_F(XmlSerializer, QuotesTabsAndLineFeedsInTextStay) {
  EXPECT_EQ(TextWritten(u"\"'\t\n"), "\"'\\u0009\\u000A\\u000A");
}

TEST_F(XmlSerializer, CarriageReturnInTextBecomesAReference) {
  EXPECT_EQ(TextWritten(u"a\r\nb"), "a&#xD;\\u000Ab\\u000A");
}

TEST_F(XmlSerializer, ControlCharactersInTextStay) {
  EXPECT_EQ(TextWritten(u"\x01\x7F\x85"), "\\u0001\\u007F\\u00C2\\u0085\\u000A");
}

TEST_F(XmlSerializer, MarkupAndQuotesInAttributeBecomeReferences) {
  EXPECT_EQ(Written(WithAttribute(u"a\"b<c&d")), "<r a=\"a&quot;b&lt;c&amp;d\"/>\\u000A");
}

TEST_F(XmlSerializer, GreaterThanAndApostropheInAttributeStay) {
  EXPECT_EQ(Written(WithAttribute(u"a>b'c")), "<r a=\"a>b'c\"/>\\u000A");
}

TEST_F(XmlSerializer, LineEndsAndTabsInAttributeBecomeReferences) {
  EXPECT_EQ(Written(WithAttribute(u"1\n2\t3\r")), "<r a=\"1&#xA;2&#x9;3&#xD;\"/>\\u000A");
}

TEST_F(XmlSerializer, EmptyAttributeKeepsItsQuotes) {
  EXPECT_EQ(Written(WithAttribute(u"")), "<r a=\"\"/>\\u000A");
}

TEST_F(XmlSerializer, EachByteOfUtf8IsAUnit) {
  EXPECT_EQ(TextWritten(u"\u00E9"), "\\u00C3\\u00A9\\u000A");
  EXPECT_EQ(TextWritten(u"\u20AC"), "\\u00E2\\u0082\\u00AC\\u000A");
  EXPECT_EQ(TextWritten(u"\U0001F600"), "\\u00F0\\u009F\\u0098\\u0080\\u000A");
  EXPECT_EQ(Written(WithAttribute(u"\u00E9\U0001F600")),
            "<r a=\"\\u00C3\\u00A9\\u00F0\\u009F\\u0098\\u0080\"/>\\u000A");
  EXPECT_EQ(Written(Element(u"\u00E9", u"x")), "<\\u00C3\\u00A9>x</\\u00C3\\u00A9>\\u000A");
}

TEST_F(XmlSerializer, UnitsAreBytesInsteadOfCharacters) {
  CXMLSerializer serializer;
  EXPECT_EQ(serializer.Serialize(XmlNode(document_->createTextNode(u"\u00E9\U0001F600"))).size(), 7u);
}

// The library's formatter works in blocks of 16384 units.
TEST_F(XmlSerializer, PairAtAnyPlaceIsOneCharacter) {
  for (int units = 16380; units <= 16388; ++units) {
    const std::u16string text = std::u16string(static_cast<std::size_t>(units), u'a') + u"\U0001F600z";
    EXPECT_TRUE(TextWritten(text.c_str()) == Repeat("a", units) + "\\u00F0\\u009F\\u0098\\u0080z\\u000A")
        << units;
  }
}

// The library's formatter never comes back from the first of these.
TEST_F(XmlSerializer, LoneSurrogateFails) {
  for (const char16_t* text : {u"a\xD800", u"\xD800", u"\xD800z", u"\xD800\xD800", u"\xDC00", u"a\xDC00z",
                               u"\xDC00\xD800", u"\U0001F600\xDE00", u"\xD83D\U0001F600"}) {
    EXPECT_EQ(Failure(document_->createTextNode(text)), kSerializationFailed) << Shown(text);
    EXPECT_EQ(Failure(WithAttribute(text)), kSerializationFailed) << Shown(text);
    EXPECT_EQ(Failure(document_->createCDATASection(text)), kSerializationFailed) << Shown(text);
    EXPECT_EQ(Failure(document_->createComment(text)), kSerializationFailed) << Shown(text);
    EXPECT_EQ(Failure(document_->createProcessingInstruction(u"p", text)), kSerializationFailed)
        << Shown(text);
  }
}

TEST_F(XmlSerializer, PairTornBetweenTwoTextsFails) {
  xercesc::DOMElement* element = Element(u"r", u"\xD83D");
  element->appendChild(document_->createTextNode(u"\xDE00"));
  EXPECT_EQ(Failure(element), kSerializationFailed);
}

TEST_F(XmlSerializer, SameObjectGivesTheSameTextAgain) {
  CXMLSerializer serializer;
  const XmlNode node(Element(u"r", u"x"));
  EXPECT_EQ(Shown(serializer.Serialize(node)), "<r>x</r>\\u000A");
  EXPECT_EQ(Shown(serializer.Serialize(node)), "<r>x</r>\\u000A");
}

TEST_F(XmlSerializer, EarlierResultOutlivesTheNextRunAndTheObject) {
  WideString first;
  {
    CXMLSerializer serializer;
    first = serializer.Serialize(XmlNode(Element(u"first")));
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

TEST_F(XmlSerializer, DeepTreeIsWritten) {
  constexpr int kLevels = 100000;
  EXPECT_TRUE(Written(Nested(kLevels, document_->createTextNode(u"x"))) ==
              Repeat("<a>", kLevels) + "x" + Repeat("</a>", kLevels) + "\\u000A");
}

TEST_F(XmlSerializer, FailureAtTheBottomOfADeepTreeIsAnOrdinaryOne) {
  EXPECT_EQ(Failure(Nested(100000, document_->createTextNode(u"\xDC00"))), kSerializationFailed);
}

TEST_F(XmlSerializer, ManyChildrenAreWritten) {
  constexpr int kChildren = 100000;
  xercesc::DOMElement* root = Element(u"r");
  for (int i = 0; i < kChildren; ++i) root->appendChild(Element(u"a", u"&"));
  EXPECT_TRUE(Written(root) == "<r>" + Repeat("<a>&amp;</a>", kChildren) + "</r>\\u000A");
}

TEST_F(XmlSerializer, LongTextIsWrittenWhole) {
  const std::u16string text(3'000'000, u'x');
  EXPECT_TRUE(Written(Element(u"r", text.c_str())) == "<r>" + std::string(3'000'000, 'x') + "</r>\\u000A");
}

TEST_F(XmlSerializer, LongRunsOfReferencesAreWrittenWhole) {
  const std::u16string text(300'000, u'<');
  EXPECT_TRUE(TextWritten(text.c_str()) == Repeat("&lt;", 300'000) + "\\u000A");
  EXPECT_TRUE(Written(WithAttribute(text.c_str())) == "<r a=\"" + Repeat("&lt;", 300'000) + "\"/>\\u000A");
}

}  // namespace
}  // namespace qv
