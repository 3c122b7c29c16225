#include "xml/tree_builder.h"

#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMAttrMapImpl.hpp>
#include <xercesc/dom/impl/DOMCasts.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>

#include "xml/node_links.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

xc::DOMChildNode& LinksOf(xc::DOMNode* child) {
  if (IsElement(child)) return AsElement(child)->fChild;
  if (IsText(child)) return AsText(child)->fChild;
  return *xc::castToChildImpl(child);
}

// Links a new node after the last child. The library keeps the last child as the first one's previous
// sibling.
void Append(xc::DOMNode* parent, xc::DOMParentNode& parentPart, xc::DOMNode* child,
            xc::DOMNodeImpl& childPart, xc::DOMChildNode& childLinks) {
  childPart.fOwnerNode = parent;
  childPart.isOwned(true);
  if (parentPart.fFirstChild == nullptr) {
    parentPart.fFirstChild = child;
    childPart.isFirstChild(true);
    childLinks.previousSibling = child;
    return;
  }
  xc::DOMChildNode& firstLinks = LinksOf(parentPart.fFirstChild);
  xc::DOMNode* last = firstLinks.previousSibling;
  LinksOf(last).nextSibling = child;
  childLinks.previousSibling = last;
  firstLinks.previousSibling = child;
}

void AppendText(xc::DOMNode* parent, xc::DOMParentNode& parentPart, xc::DOMTextImpl* text) {
  Append(parent, parentPart, text, text->fNode, text->fChild);
}

void AddAttribute(xc::DOMElementImpl* element, xc::DOMAttrImpl* attribute, const xc::XMLAttr& source) {
  element->fAttributes->setNamedItemFast(attribute);
  if (source.getValue() != nullptr) {
    xc::DOMText* value = attribute->fParent.fOwnerDocument->createTextNode(source.getValue());
    AppendText(attribute, attribute->fParent, AsText(value));
  }
  attribute->fNode.isSpecified(source.getSpecified());
}

}  // namespace

void TreeBuilder::startDocument() {
  for (KnownName& known : knownNames_) known = {};
  XercesDOMParser::startDocument();
}

// Looking up a name in the document's table is the most expensive part of creating an element.
xc::DOMElement* TreeBuilder::NewElement(const xc::XMLElementDecl& declaration) {
  KnownName& known = knownNames_[declaration.getId() % kKnownNames];
  if (known.declaration == &declaration) {
    auto* element = new (fDocument, xc::DOMMemoryManager::ELEMENT_OBJECT) xc::DOMElementImpl(fDocument, u"");
    element->fName = known.name;
    return element;
  }
  xc::DOMElement* element = createElement(declaration.getFullName());
  known = {&declaration, AsElement(element)->fName};
  return element;
}

void TreeBuilder::startElement(const xc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                               const xc::RefVectorOf<xc::XMLAttr>& attributes, XMLSize_t attributeCount,
                               bool isEmpty, bool isRoot) {
  if (getDoNamespaces() || getCreateSchemaInfo() || declaration.hasAttDefs() || !IsElement(fCurrentParent)) {
    XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
    return;
  }
  xc::DOMElementImpl* element = AsElement(NewElement(declaration));
  if (attributeCount != 0) element->fAttributes->reserve(attributeCount);
  for (XMLSize_t i = 0; i < attributeCount; ++i) {
    const xc::XMLAttr& source = *attributes.elementAt(i);
    AddAttribute(element, static_cast<xc::DOMAttrImpl*>(createAttr(source.getName())), source);
  }
  Append(fCurrentParent, AsElement(fCurrentParent)->fParent, element, element->fNode, element->fChild);
  fCurrentParent = element;
  fCurrentNode = element;
  fWithinElement = true;
  if (isEmpty) endElement(declaration, uriId, isRoot, prefix);
}

void TreeBuilder::endElement(const xc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                             const XMLCh* prefix) {
  if (getDoXInclude() || !IsElement(fCurrentParent) || !AsElement(fCurrentParent)->fNode.isOwned()) {
    XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
    return;
  }
  fCurrentNode = fCurrentParent;
  fCurrentParent = AsElement(fCurrentNode)->fNode.fOwnerNode;
  if (fCurrentParent == fDocument) fWithinElement = false;
}

xc::DOMAttr* TreeBuilder::createAttr(const XMLCh* name) {
  auto* attribute = new (fDocument, xc::DOMMemoryManager::ATTR_OBJECT) xc::DOMAttrImpl(fDocument, u"");
  attribute->fName = fDocument->cloneString(name);
  return attribute;
}

void TreeBuilder::docCharacters(const XMLCh* units, XMLSize_t length, bool isCData) {
  if (isCData || !fWithinElement || IsText(fCurrentNode) || !IsElement(fCurrentParent)) {
    XercesDOMParser::docCharacters(units, length, isCData);
    return;
  }
  xc::DOMText* text = createText(units, length);
  AppendText(fCurrentParent, AsElement(fCurrentParent)->fParent, AsText(text));
  fCurrentNode = text;
}

}  // namespace qv
