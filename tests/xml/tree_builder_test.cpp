// The faster builder against the library's own: the same documents must come out.
#include "xml/tree_builder.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>

#include "xml_fixture.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

std::u16string Units(const XMLCh* text) {
  return text == nullptr ? u"(null)" : text;
}

void DumpAttributes(const xc::DOMNode* node, std::u16string* out) {
  const xc::DOMNamedNodeMap* map = node->getAttributes();
  for (XMLSize_t i = 0; map != nullptr && i < map->getLength(); ++i) {
    const auto* attribute = static_cast<const xc::DOMAttr*>(map->item(i));
    *out += u" " + Units(attribute->getNodeName()) + u"=" + Units(attribute->getNodeValue());
    if (!attribute->getSpecified()) *out += u"(default)";
    if (attribute->getOwnerElement() != node) *out += u"(stray)";
    EXPECT_EQ(attribute->getFirstChild(), attribute->getLastChild());
  }
}

// Every link of every node, in document order. The documents here are shallow.
void Dump(const xc::DOMNode* node, std::u16string* out) {
  *out += u"[" + std::u16string(1, static_cast<char16_t>(u'0' + node->getNodeType())) + u" " +
          Units(node->getNodeName()) + u":" + Units(node->getNodeValue());
  DumpAttributes(node, out);
  const xc::DOMNode* previous = nullptr;
  for (const xc::DOMNode* child = node->getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    EXPECT_EQ(child->getParentNode(), node);
    EXPECT_EQ(child->getPreviousSibling(), previous);
    Dump(child, out);
    previous = child;
  }
  EXPECT_EQ(node->getLastChild(), previous);
  *out += u"]";
}

void ParseInto(xc::XercesDOMParser* parser, const std::string& text, QvDOMErrorHandlers* handler) {
  parser->setErrorHandler(handler);
  parser->parse(
      xc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "x", false));
}

class TreeBuilderTest : public XmlFixture, public ::testing::WithParamInterface<const char*> {
 protected:
  QvDOMErrorHandlers handler_{true};
};

TEST_P(TreeBuilderTest, DocumentIsTheLibrarysOwn) {
  xc::XercesDOMParser theirs;
  TreeBuilder ours;
  ParseInto(&theirs, GetParam(), &handler_);
  ParseInto(&ours, GetParam(), &handler_);
  std::u16string theirDump;
  std::u16string ourDump;
  Dump(theirs.getDocument(), &theirDump);
  Dump(ours.getDocument(), &ourDump);
  EXPECT_EQ(ourDump, theirDump);
}

TEST_P(TreeBuilderTest, DocumentWithNamespacesIsTheLibrarysOwn) {
  xc::XercesDOMParser theirs;
  TreeBuilder ours;
  theirs.setDoNamespaces(true);
  ours.setDoNamespaces(true);
  ParseInto(&theirs, GetParam(), &handler_);
  ParseInto(&ours, GetParam(), &handler_);
  std::u16string theirDump;
  std::u16string ourDump;
  Dump(theirs.getDocument(), &theirDump);
  Dump(ours.getDocument(), &ourDump);
  EXPECT_EQ(ourDump, theirDump);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, TreeBuilderTest,
    ::testing::Values(
        "<a/>", "<a>text</a>", "<a><b/><b/><b/></a>", "<a>x<b>y</b>z<b/>w</a>", "<a z='1' m='' b='&lt;2'/>",
        "<a>&amp;&#65;x&lt;</a>", "<a><![CDATA[one]]><![CDATA[two]]>three</a>", "<a>x<!--c-->y<?p d?>z</a>",
        "<!--before--><?p?><a><b c='d'>e</b></a><!--after-->", "<a>\n <b>\n </b>\n</a>\n",
        "<!DOCTYPE a [<!ENTITY e '<b k=\"v\">in</b>tail'>]><a>x&e;y&e;</a>",
        "<!DOCTYPE a [<!ENTITY e 'text'>]><a b='&e;'>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e '&f;&f;'><!ENTITY f '<c/>'>]><a><b>&e;</b></a>",
        "<!DOCTYPE a [<!ATTLIST a d CDATA 'given' i ID #IMPLIED>]><a i='n'><a d='mine'/><b d='x'/></a>",
        "<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b EMPTY>]><a> <b/> </a>",
        "<s:a xmlns:s='u' xmlns='v'><s:b c='1' s:c='2'/></s:a>"));

}  // namespace
}  // namespace qv
