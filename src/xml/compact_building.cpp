// How the parser makes its tree: the handlers that the XML library's scanner calls for the content.
#include <string>

#include <xercesc/dom/impl/DOMAttrImpl.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>

#include "xml/qv_dom_parser.h"

namespace qv {

namespace xc = XERCES_CPP_NAMESPACE;

void QvDomParser::StartTree(std::size_t units) {
  isCompact_ = units <= CompactTree::kMostUnits && !getDoNamespaces() && !getDoSchema();
  isFinished_ = false;
  if (isCompact_) tree_.Start({}, CompactTree::CeilingFor(units));
}

// A document with a type has nodes of other kinds. So far there can only be comments and instructions.
void QvDomParser::UseLibraryTree() {
  isCompact_ = false;
  for (CompactTree::Index node = 1; node < tree_.Size(); ++node) {
    const std::u16string value(tree_.ValueOf(node));
    if (tree_.TypeOf(node) == CompactTree::kComment) {
      XercesDOMParser::docComment(value.c_str());
    } else {
      XercesDOMParser::docPI(std::u16string(tree_.NameOf(node)).c_str(), value.c_str());
    }
  }
  tree_.Forget();
}

// The scanner numbers the names of elements as they come up, from 1.
CompactTree::Index QvDomParser::NameOfElement(const xc::XMLElementDecl& declaration) {
  const auto number = static_cast<std::uint32_t>(declaration.getId());
  if (number > elementNames_.Size()) {
    if (!elementNames_.HasRoom(1)) elementNames_.Grow(Memory(), 1, kMaxElementNames);
    *elementNames_.Add(1) = tree_.AddName(tree_.Store(declaration.getFullName()));
  }
  return elementNames_[number - 1];
}

// A document may have any number of names, so only the latest of each place in the table is looked for.
CompactTree::Index QvDomParser::NameOfAttribute(std::u16string_view name) {
  std::size_t place = name.size();
  for (const char16_t unit : name) place = place * 31 + unit;
  CompactTree::Index& recent = recentNames_[place % kRecentNames];
  if (recent == 0 || tree_.NameAt(recent - 1) != name) recent = tree_.AddName(tree_.Store(name)) + 1;
  return recent - 1;
}

void QvDomParser::startElement(const xc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                               const xc::RefVectorOf<xc::XMLAttr>& attributes, XMLSize_t attributeCount,
                               bool isEmpty, bool isRoot) {
  if (IsLimited()) {
    if (declaration.getId() > kMaxElementNames) Refuse(u"The document has too many different elements.");
    if (attributeCount > kMaxAttributesOfElement) Refuse(u"The element has too many attributes.");
  }
  if (!isCompact_) {
    XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
    return;
  }
  tree_.OpenElement(NameOfElement(declaration));
  for (XMLSize_t i = 0; i < attributeCount; ++i) {
    const xc::XMLAttr& attribute = *attributes.elementAt(i);
    const CompactTree::Index name = NameOfAttribute(attribute.getName());
    tree_.AddAttribute(name, tree_.Store(attribute.getValue()));
  }
  if (isEmpty) tree_.CloseElement();
}

void QvDomParser::endElement(const xc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                             const XMLCh* prefix) {
  if (isCompact_) {
    tree_.CloseElement();
  } else {
    XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
  }
}

// Text outside the document's element is white space, which has no nodes.
void QvDomParser::docCharacters(const XMLCh* units, XMLSize_t length, bool isCData) {
  if (!isCompact_) {
    XercesDOMParser::docCharacters(units, length, isCData);
  } else if (tree_.IsInDocument()) {
    return;
  } else if (isCData) {
    tree_.AddChild(CompactTree::kCData, 0, tree_.Store({units, length}));
  } else {
    tree_.AppendText({units, length});
  }
}

void QvDomParser::docComment(const XMLCh* comment) {
  if (isCompact_) {
    tree_.AddChild(CompactTree::kComment, 0, tree_.Store(comment));
  } else {
    XercesDOMParser::docComment(comment);
  }
}

void QvDomParser::docPI(const XMLCh* target, const XMLCh* data) {
  if (isCompact_) {
    const CompactTree::Index name = tree_.AddName(tree_.Store(target));
    tree_.AddChild(CompactTree::kInstruction, name, tree_.Store(data));
  } else {
    XercesDOMParser::docPI(target, data);
  }
}

xc::DOMAttr* QvDomParser::createAttr(const XMLCh* name) {
  auto* attribute = new (fDocument, xc::DOMMemoryManager::ATTR_OBJECT) xc::DOMAttrImpl(fDocument, u"");
  attribute->fName = fDocument->cloneString(name);
  return attribute;
}

}  // namespace qv
