// The rarer nodes: documents and their types, entities, instructions, and nodes that cannot stand alone.
#include <gtest/gtest.h>

#include <string>

#include "serializer_fixture.h"

namespace qv {
namespace {

constexpr char kDeclarations[] =
    "<!DOCTYPE r ["
    "<!NOTATION gif SYSTEM \"viewer\">"
    "<!ENTITY inside \"text\">"
    "<!ENTITY system SYSTEM \"s.xml\">"
    "<!ENTITY public PUBLIC \"-//P\" \"p.xml\">"
    "<!ENTITY picture SYSTEM \"p.gif\" NDATA gif>"
    "<!ENTITY known PUBLIC \"-//K\" \"k.gif\" NDATA gif>"
    "]><r/>";

class XmlSerializerNodes : public SerializerFixture {
 protected:
  // The document "r" with this document type, made without a parser.
  const xercesc::DOMDocumentType* DocumentType(const char16_t* publicId, const char16_t* systemId) {
    xercesc::DOMImplementation* library = xercesc::DOMImplementation::getImplementation();
    xercesc::DOMDocumentType* type = library->createDocumentType(u"r", publicId, systemId);
    document_->release();
    document_ = library->createDocument(nullptr, u"r", type);
    return document_->getDoctype();
  }
  std::string EntityWritten(const char16_t* name) {
    return Written(Parsed(kDeclarations)->getDoctype()->getEntities()->getNamedItem(name));
  }
};

TEST_F(XmlSerializerNodes, CDataIsWrittenAsItStands) {
  EXPECT_EQ(Written(document_->createCDATASection(u"a<b&c>\"'\r\t\u00E9")),
            "<![CDATA[a<b&c>\"'\\u000D\\u0009\\u00C3\\u00A9]]>\\u000A");
  EXPECT_EQ(Written(document_->createCDATASection(u"")), "<![CDATA[]]>\\u000A");
}

TEST_F(XmlSerializerNodes, CommentIsWrittenAsItStands) {
  EXPECT_EQ(Written(document_->createComment(u" a<b&c>\"\r\u00E9 ")),
            "<!-- a<b&c>\"\\u000D\\u00C3\\u00A9 -->\\u000A");
  EXPECT_EQ(Written(document_->createComment(u"")), "<!---->\\u000A");
}

TEST_F(XmlSerializerNodes, InstructionHasABlankBeforeItsData) {
  EXPECT_EQ(Written(document_->createProcessingInstruction(u"go", u"a<b&\"c\"")), "<?go a<b&\"c\"?>\\u000A");
}

TEST_F(XmlSerializerNodes, InstructionWithoutDataHasNoBlank) {
  EXPECT_EQ(Written(document_->createProcessingInstruction(u"go", u"")), "<?go?>\\u000A");
  EXPECT_EQ(Written(Parsed("<?go?><r/>")->getFirstChild()), "<?go?>\\u000A");
}

TEST_F(XmlSerializerNodes, EscapesEndWithTheirNode) {
  xercesc::DOMElement* root = Element(u"r", u"&");
  root->setAttribute(u"a", u"<");
  root->appendChild(document_->createCDATASection(u"&"));
  root->appendChild(document_->createTextNode(u">"));
  root->appendChild(document_->createComment(u"&"));
  root->appendChild(document_->createProcessingInstruction(u"p", u"&"));
  EXPECT_EQ(Written(root), "<r a=\"&lt;\">&amp;<![CDATA[&]]>&gt;<!--&--><?p &?></r>\\u000A");
}

TEST_F(XmlSerializerNodes, EntityReferenceIsItsName) {
  EXPECT_EQ(Written(document_->createEntityReference(u"e")), "&e;\\u000A");
}

TEST_F(XmlSerializerNodes, ContentOfAReferencedEntityIsNotWritten) {
  xercesc::DOMElement* root =
      Parsed("<!DOCTYPE r [<!ENTITY e \"x<b>y</b>\">]><r>1&e;2<c>&e;</c>&e;</r>")->getDocumentElement();
  ASSERT_NE(root->getChildNodes()->item(1)->getFirstChild(), nullptr);
  EXPECT_EQ(Written(root), "<r>1&e;2<c>&e;</c>&e;</r>\\u000A");
  EXPECT_EQ(Written(root->getChildNodes()->item(1)), "&e;\\u000A");
}

TEST_F(XmlSerializerNodes, ReferencesThatTheParserResolvesBecomeText) {
  EXPECT_EQ(Written(Parsed("<r>&#65;&lt;&#xE9;&quot;</r>")->getDocumentElement()),
            "<r>A&lt;\\u00C3\\u00A9\"</r>\\u000A");
}

TEST_F(XmlSerializerNodes, EachChildOfADocumentIsALineAndOneMoreFollows) {
  EXPECT_EQ(Written(Parsed("<!--c--><?p d?><r><a/>t</r><!--e-->")),
            "<!--c-->\\u000A<?p d?>\\u000A<r><a/>t</r>\\u000A<!--e-->\\u000A\\u000A");
}

TEST_F(XmlSerializerNodes, NothingIsWrittenForTheXmlDeclaration) {
  EXPECT_EQ(Written(Parsed("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n\n<r/>\n\n")),
            "<r/>\\u000A\\u000A");
}

TEST_F(XmlSerializerNodes, DocumentWithoutChildrenIsTheLastLineFeed) {
  EXPECT_EQ(Written(document_), "\\u000A");
}

// A document type has no value, so no name follows the blank.
TEST_F(XmlSerializerNodes, DocumentTypeHasNoName) {
  EXPECT_EQ(Written(DocumentType(nullptr, nullptr)), "<!DOCTYPE >\\u000A");
  EXPECT_EQ(Written(Parsed("<!DOCTYPE r><r/>")), "<!DOCTYPE >\\u000A<r/>\\u000A\\u000A");
}

TEST_F(XmlSerializerNodes, DocumentTypeHasItsIds) {
  EXPECT_EQ(Written(DocumentType(u"-//P", u"s.dtd")), "<!DOCTYPE  PUBLIC \"-//P\" \"s.dtd\">\\u000A");
  EXPECT_EQ(Written(DocumentType(u"-//P", nullptr)), "<!DOCTYPE  PUBLIC \"-//P\">\\u000A");
  EXPECT_EQ(Written(DocumentType(nullptr, u"s.dtd")), "<!DOCTYPE  SYSTEM \"s.dtd\">\\u000A");
}

TEST_F(XmlSerializerNodes, IdsOfADocumentTypeAreWrittenAsTheyStand) {
  EXPECT_EQ(Written(DocumentType(u"a&b", u"<\u00E9")),
            "<!DOCTYPE  PUBLIC \"a&b\" \"<\\u00C3\\u00A9\">\\u000A");
}

TEST_F(XmlSerializerNodes, InternalSubsetStandsInBrackets) {
  EXPECT_EQ(Written(Parsed("<!DOCTYPE r [<!ENTITY e \"x\">]><r/>")),
            "<!DOCTYPE [<!ENTITY e \"x\">]>\\u000A<r/>\\u000A\\u000A");
  EXPECT_EQ(Written(Parsed("<!DOCTYPE r PUBLIC \"-//P\" \"s.dtd\" [<!ENTITY e \"x\">]><r/>")->getDoctype()),
            "<!DOCTYPE  PUBLIC \"-//P\" \"s.dtd\"[<!ENTITY e \"x\">]>\\u000A");
}

// The parser gives a document type without a public id an empty one.
TEST_F(XmlSerializerNodes, EmptyPublicIdIsNone) {
  EXPECT_EQ(Written(Parsed("<!DOCTYPE r SYSTEM \"s.dtd\"><r/>")->getDoctype()),
            "<!DOCTYPE  SYSTEM \"s.dtd\">\\u000A");
  EXPECT_EQ(Written(Parsed("<!DOCTYPE r SYSTEM \"s.dtd\" [<!ENTITY e \"x\">]><r/>")->getDoctype()),
            "<!DOCTYPE  SYSTEM \"s.dtd\"[<!ENTITY e \"x\">]>\\u000A");
}

TEST_F(XmlSerializerNodes, EntityEndsWithALineFeedOfItsOwn) {
  EXPECT_EQ(EntityWritten(u"inside"), "<!ENTITY inside>\\u000A\\u000A");
}

TEST_F(XmlSerializerNodes, PiecesOfAnEntityFollowEachOtherWithoutBlanks) {
  EXPECT_EQ(EntityWritten(u"system"), "<!ENTITY systemSYSTEM \"s.xml\">\\u000A\\u000A");
  EXPECT_EQ(EntityWritten(u"public"), "<!ENTITY publicPUBLIC \"-//P\"SYSTEM \"p.xml\">\\u000A\\u000A");
  EXPECT_EQ(EntityWritten(u"picture"), "<!ENTITY pictureSYSTEM \"p.gif\"NDATA \"gif\">\\u000A\\u000A");
  EXPECT_EQ(EntityWritten(u"known"),
            "<!ENTITY knownPUBLIC \"-//K\"SYSTEM \"k.gif\"NDATA \"gif\">\\u000A\\u000A");
}

TEST_F(XmlSerializerNodes, AttributeAloneFails) {
  EXPECT_EQ(Failure(document_->createAttribute(u"a")), kSerializationFailed);
  EXPECT_EQ(Failure(WithAttribute(u"1")->getAttributeNode(u"a")), kSerializationFailed);
}

TEST_F(XmlSerializerNodes, FragmentFails) {
  xercesc::DOMDocumentFragment* fragment = document_->createDocumentFragment();
  EXPECT_EQ(Failure(fragment), kSerializationFailed);
  fragment->appendChild(Element(u"r"));
  EXPECT_EQ(Failure(fragment), kSerializationFailed);
}

TEST_F(XmlSerializerNodes, NotationFails) {
  EXPECT_EQ(Failure(Parsed(kDeclarations)->getDoctype()->getNotations()->getNamedItem(u"gif")),
            kSerializationFailed);
}

TEST_F(XmlSerializerNodes, NullNodeFails) {
  EXPECT_EQ(Failure(nullptr), kSerializationFailed);
}

}  // namespace
}  // namespace qv
