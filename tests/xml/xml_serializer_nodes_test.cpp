// The rarer nodes: documents and their types, entities, instructions, and nodes that cannot stand alone.
#include <gtest/gtest.h>

#include <string>
#include <utility>

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
  // The document "r" with this document type, created without a parser.
  const xercesc::DOMDocumentType* DocumentType(const char16_t* publicId, const char16_t* systemId) {
    xercesc::DOMImplementation* library = xercesc::DOMImplementation::getImplementation();
    xercesc::DOMDocumentType* type = library->createDocumentType(u"r", publicId, systemId);
    document_->release();
    document_ = library->createDocument(nullptr, u"r", type);
    return document_->getDoctype();
  }
};

TEST_F(XmlSerializerNodes, CDataCommentsAndInstructionsAreWrittenAsTheyAre) {
  ExpectLine(document_->createCDATASection(u"a<b&c>\"'\r\t\u00E9"),
             R"(<![CDATA[a<b&c>"'\u000D\u0009\u00C3\u00A9]]>)");
  ExpectLine(document_->createCDATASection(u""), "<![CDATA[]]>");
  ExpectLine(document_->createComment(u" a<b&c>\"\r\u00E9 "), R"(<!-- a<b&c>"\u000D\u00C3\u00A9 -->)");
  ExpectLine(document_->createComment(u""), "<!---->");
  ExpectLine(document_->createProcessingInstruction(u"go", u"a<b&\"c\""), "<?go a<b&\"c\"?>");
  ExpectLine(document_->createProcessingInstruction(u"go", u""), "<?go?>");
  ExpectLine(Parsed("<?go?><r/>")->getFirstChild(), "<?go?>");
}

TEST_F(XmlSerializerNodes, EscapesEndWithTheirNode) {
  xercesc::DOMElement* root = Element(u"r", u"&");
  root->setAttribute(u"a", u"<");
  root->appendChild(document_->createCDATASection(u"&"));
  root->appendChild(document_->createTextNode(u">"));
  root->appendChild(document_->createComment(u"&"));
  root->appendChild(document_->createProcessingInstruction(u"p", u"&"));
  ExpectLine(root, "<r a=\"&lt;\">&amp;<![CDATA[&]]>&gt;<!--&--><?p &?></r>");
}

// Resolved references become text.
TEST_F(XmlSerializerNodes, EntityReferenceIsItsNameWithoutItsContent) {
  ExpectLine(document_->createEntityReference(u"e"), "&e;");
  ExpectLine(ParsedElement("<r>&#65;&lt;&#xE9;&quot;</r>"), R"(<r>A&lt;\u00C3\u00A9"</r>)");
  xercesc::DOMElement* root =
      ParsedElement("<!DOCTYPE r [<!ENTITY e \"x<b>y</b>\">]><r>1&e;2<c>&e;</c>&e;</r>");
  ASSERT_NE(root->getChildNodes()->item(1)->getFirstChild(), nullptr);
  ExpectLine(root, "<r>1&e;2<c>&e;</c>&e;</r>");
  ExpectLine(root->getChildNodes()->item(1), "&e;");
}

// Nothing is written for the XML declaration.
TEST_F(XmlSerializerNodes, EachChildOfADocumentIsALineAndOneMoreFollows) {
  ExpectLine(Parsed("<!--c--><?p d?><r><a/>t</r><!--e-->"),
             R"(<!--c-->\u000A<?p d?>\u000A<r><a/>t</r>\u000A<!--e-->\u000A)");
  ExpectLine(Parsed("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n\n<r/>\n\n"),
             "<r/>\\u000A");
  ExpectLine(document_, "");
}

// A document type has no value, so no name follows the blank; an empty public id is none.
TEST_F(XmlSerializerNodes, DocumentTypeHasItsIdsAndItsInternalSubset) {
  const struct {
    const char16_t* publicId;
    const char16_t* systemId;
    const char* line;
  } made[] = {{nullptr, nullptr, "<!DOCTYPE >"},
              {u"-//P", u"s.dtd", R"(<!DOCTYPE  PUBLIC "-//P" "s.dtd">)"},
              {u"-//P", nullptr, "<!DOCTYPE  PUBLIC \"-//P\">"},
              {nullptr, u"s.dtd", "<!DOCTYPE  SYSTEM \"s.dtd\">"},
              {u"a&b", u"<\u00E9", R"(<!DOCTYPE  PUBLIC "a&b" "<\u00C3\u00A9">)"}};
  for (const auto& row : made) ExpectLine(DocumentType(row.publicId, row.systemId), row.line);
  ExpectLine(Parsed("<!DOCTYPE r><r/>"), "<!DOCTYPE >\\u000A<r/>\\u000A");
  ExpectLine(Parsed("<!DOCTYPE r [<!ENTITY e \"x\">]><r/>"),
             R"(<!DOCTYPE [<!ENTITY e "x">]>\u000A<r/>\u000A)");
  const std::pair<const char*, const char*> parsed[] = {
      {R"(<!DOCTYPE r PUBLIC "-//P" "s.dtd" [<!ENTITY e "x">]><r/>)",
       R"(<!DOCTYPE  PUBLIC "-//P" "s.dtd"[<!ENTITY e "x">]>)"},
      {"<!DOCTYPE r SYSTEM \"s.dtd\"><r/>", "<!DOCTYPE  SYSTEM \"s.dtd\">"},
      {R"(<!DOCTYPE r SYSTEM "s.dtd" [<!ENTITY e "x">]><r/>)",
       R"(<!DOCTYPE  SYSTEM "s.dtd"[<!ENTITY e "x">]>)"}};
  for (const auto& [text, line] : parsed) ExpectLine(Parsed(text)->getDoctype(), line);
}

// Its parts have no blanks between them, and it ends with a line feed.
TEST_F(XmlSerializerNodes, EntityIsItsDeclaration) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"inside", "<!ENTITY inside>"},
      {u"system", "<!ENTITY systemSYSTEM \"s.xml\">"},
      {u"public", R"(<!ENTITY publicPUBLIC "-//P"SYSTEM "p.xml">)"},
      {u"picture", R"(<!ENTITY pictureSYSTEM "p.gif"NDATA "gif">)"},
      {u"known", R"(<!ENTITY knownPUBLIC "-//K"SYSTEM "k.gif"NDATA "gif">)"}};
  for (const auto& [name, line] : rows)
    ExpectLine(Parsed(kDeclarations)->getDoctype()->getEntities()->getNamedItem(name),
               std::string(line) + "\\u000A");
}

TEST_F(XmlSerializerNodes, AttributeFragmentNotationAndNullFail) {
  ExpectFailure(document_->createAttribute(u"a"));
  ExpectFailure(WithAttribute(u"1")->getAttributeNode(u"a"));
  xercesc::DOMDocumentFragment* fragment = document_->createDocumentFragment();
  ExpectFailure(fragment);
  fragment->appendChild(Element(u"r"));
  ExpectFailure(fragment);
  ExpectFailure(Parsed(kDeclarations)->getDoctype()->getNotations()->getNamedItem(u"gif"));
  ExpectFailure(nullptr);
}

}  // namespace
}  // namespace qv
