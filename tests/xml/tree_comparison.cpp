#include "tree_comparison.h"

#include <string_view>
#include <vector>

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMEntity.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/dom/DOMText.hpp>
#include <xercesc/dom/impl/DOMCasts.hpp>

#include "qvscriptwells/wide_string.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

bool SameText(const XMLCh* ours, const XMLCh* theirs) {
  if (ours == nullptr || theirs == nullptr) return ours == theirs;
  return std::u16string_view(ours) == std::u16string_view(theirs);
}

// No recursion: documents may be deep.
class Comparison {
 public:
  std::string Run(const xc::DOMNode* ours, const xc::DOMNode* theirs) {
    Meet(ours, theirs, "document");
    while (!open_.empty() && difference_.empty()) {
      const Pair pair = open_.back();
      open_.pop_back();
      CompareNode(pair);
    }
    return difference_;
  }

 private:
  struct Pair {
    const xc::DOMNode* ours;
    const xc::DOMNode* theirs;
  };

  void Expect(bool isSame, const char* what) {
    if (!isSame && difference_.empty()) difference_ = std::string(what) + at_;
  }
  // To be compared later; false for nothing on either side.
  bool Meet(const xc::DOMNode* ours, const xc::DOMNode* theirs, const char* what) {
    Expect((ours == nullptr) == (theirs == nullptr), what);
    if (ours == nullptr || theirs == nullptr) return false;
    open_.push_back({ours, theirs});
    return true;
  }

  void CompareNode(const Pair& pair) {
    at_ = " at " + ToUtf8(pair.ours->getNodeName());
    Expect(pair.ours->getNodeType() == pair.theirs->getNodeType(), "type");
    if (!difference_.empty()) return;
    Expect(SameText(pair.ours->getNodeName(), pair.theirs->getNodeName()), "name");
    Expect(SameText(pair.ours->getNodeValue(), pair.theirs->getNodeValue()), "value");
    Expect(SameText(pair.ours->getNamespaceURI(), pair.theirs->getNamespaceURI()), "namespace");
    Expect(SameText(pair.ours->getLocalName(), pair.theirs->getLocalName()), "local name");
    Expect(SameText(pair.ours->getPrefix(), pair.theirs->getPrefix()), "prefix");
    Expect(xc::castToNodeImpl(pair.ours)->flags == xc::castToNodeImpl(pair.theirs)->flags, "flags");
    CompareChildren(pair);
    CompareMaps(pair.ours->getAttributes(), pair.theirs->getAttributes(), pair, "attributes");
    CompareKind(pair);
  }

  void CompareChildren(const Pair& parent) {
    Pair before{nullptr, nullptr};
    Pair child{parent.ours->getFirstChild(), parent.theirs->getFirstChild()};
    while (Meet(child.ours, child.theirs, "count of children")) {
      CompareLinks(child, parent, before);
      before = child;
      child = {child.ours->getNextSibling(), child.theirs->getNextSibling()};
    }
    Expect(parent.ours->getLastChild() == before.ours, "our last child");
    Expect(parent.theirs->getLastChild() == before.theirs, "their last child");
    Expect(parent.ours->hasChildNodes() == parent.theirs->hasChildNodes(), "children");
  }

  void CompareLinks(const Pair& child, const Pair& parent, const Pair& before) {
    Expect(child.ours->getPreviousSibling() == before.ours, "our previous sibling");
    Expect(child.theirs->getPreviousSibling() == before.theirs, "their previous sibling");
    Expect((child.ours->getParentNode() == parent.ours) == (child.theirs->getParentNode() == parent.theirs),
           "parent");
    Expect(child.ours->getParentNode() == parent.ours ||
               parent.ours->getNodeType() == xc::DOMNode::ATTRIBUTE_NODE,
           "our parent");
    Expect((child.ours->getOwnerDocument() == parent.ours->getOwnerDocument()) ==
               (child.theirs->getOwnerDocument() == parent.theirs->getOwnerDocument()),
           "owner");
  }

  void CompareMaps(const xc::DOMNamedNodeMap* ours, const xc::DOMNamedNodeMap* theirs, const Pair& owner,
                   const char* what) {
    Expect((ours == nullptr) == (theirs == nullptr), what);
    if (ours == nullptr || theirs == nullptr) return;
    Expect(ours->getLength() == theirs->getLength(), what);
    for (XMLSize_t i = 0; i < ours->getLength() && difference_.empty(); ++i) {
      const Pair item{ours->item(i), theirs->item(i)};
      Meet(item.ours, item.theirs, what);
      Expect((ours->getNamedItem(item.ours->getNodeName()) == item.ours) ==
                 (theirs->getNamedItem(item.theirs->getNodeName()) == item.theirs),
             "item by name");
      if (item.ours->getNodeType() == xc::DOMNode::ATTRIBUTE_NODE) CompareOwner(item, owner);
    }
  }

  void CompareOwner(const Pair& attribute, const Pair& owner) {
    const auto* ours = static_cast<const xc::DOMAttr*>(attribute.ours);
    const auto* theirs = static_cast<const xc::DOMAttr*>(attribute.theirs);
    Expect(ours->getOwnerElement() == owner.ours, "our owner element");
    Expect(theirs->getOwnerElement() == owner.theirs, "their owner element");
    Expect(ours->getOwnerDocument() == owner.ours->getOwnerDocument(), "our owner document");
    Expect(ours->getSpecified() == theirs->getSpecified(), "specified");
    Expect(ours->isId() == theirs->isId(), "identity");
  }

  void CompareKind(const Pair& pair) {
    switch (pair.ours->getNodeType()) {
      case xc::DOMNode::TEXT_NODE:
      case xc::DOMNode::CDATA_SECTION_NODE:
        CompareTexts(static_cast<const xc::DOMText&>(*pair.ours),
                     static_cast<const xc::DOMText&>(*pair.theirs));
        break;
      case xc::DOMNode::DOCUMENT_NODE:
        CompareDocuments(static_cast<const xc::DOMDocument&>(*pair.ours),
                         static_cast<const xc::DOMDocument&>(*pair.theirs));
        break;
      case xc::DOMNode::DOCUMENT_TYPE_NODE:
        CompareDocumentTypes(pair);
        break;
      case xc::DOMNode::ENTITY_NODE:
        CompareEntities(static_cast<const xc::DOMEntity&>(*pair.ours),
                        static_cast<const xc::DOMEntity&>(*pair.theirs));
        break;
      default:
        break;
    }
  }

  void CompareTexts(const xc::DOMText& ours, const xc::DOMText& theirs) {
    Expect(ours.getLength() == theirs.getLength(), "length");
    Expect(ours.getIsElementContentWhitespace() == theirs.getIsElementContentWhitespace(), "white space");
  }

  void CompareDocuments(const xc::DOMDocument& ours, const xc::DOMDocument& theirs) {
    Expect(SameText(ours.getXmlVersion(), theirs.getXmlVersion()), "version");
    Expect(SameText(ours.getXmlEncoding(), theirs.getXmlEncoding()), "encoding");
    Expect(SameText(ours.getInputEncoding(), theirs.getInputEncoding()), "encoding of the input");
    Expect(ours.getXmlStandalone() == theirs.getXmlStandalone(), "standalone");
    Expect(SameText(ours.getDocumentURI(), theirs.getDocumentURI()), "name");
    Meet(ours.getDocumentElement(), theirs.getDocumentElement(), "document element");
    Expect(ours.getElementsByTagName(u"*")->getLength() == theirs.getElementsByTagName(u"*")->getLength(),
           "count of elements");
  }

  void CompareDocumentTypes(const Pair& pair) {
    const auto& ours = static_cast<const xc::DOMDocumentType&>(*pair.ours);
    const auto& theirs = static_cast<const xc::DOMDocumentType&>(*pair.theirs);
    Expect(SameText(ours.getPublicId(), theirs.getPublicId()), "public id");
    Expect(SameText(ours.getSystemId(), theirs.getSystemId()), "system id");
    Expect(SameText(ours.getInternalSubset(), theirs.getInternalSubset()), "internal subset");
    CompareMaps(ours.getEntities(), theirs.getEntities(), pair, "entities");
    CompareMaps(ours.getNotations(), theirs.getNotations(), pair, "notations");
  }

  void CompareEntities(const xc::DOMEntity& ours, const xc::DOMEntity& theirs) {
    Expect(SameText(ours.getPublicId(), theirs.getPublicId()), "public id");
    Expect(SameText(ours.getSystemId(), theirs.getSystemId()), "system id");
    Expect(SameText(ours.getNotationName(), theirs.getNotationName()), "notation");
  }

  std::vector<Pair> open_;
  std::string difference_;
  std::string at_;
};

}  // namespace

std::string DifferenceBetween(const xc::DOMNode* ours, const xc::DOMNode* theirs) {
  return Comparison().Run(ours, theirs);
}

}  // namespace qv
