// Replaces tree_builder.cpp if QV_STOCK_TREE_BUILDER is set: the XML library's code builds every node.
#include "xml/tree_builder.h"

namespace qv {

namespace xc = XERCES_CPP_NAMESPACE;

void TreeBuilder::startDocument() {
  XercesDOMParser::startDocument();
}

void TreeBuilder::startElement(const xc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                               const xc::RefVectorOf<xc::XMLAttr>& attributes, XMLSize_t attributeCount,
                               bool isEmpty, bool isRoot) {
  XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
}

void TreeBuilder::endElement(const xc::XMLElementDecl& declaration, unsigned int uriId, bool isRoot,
                             const XMLCh* prefix) {
  XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
}

void TreeBuilder::docCharacters(const XMLCh* units, XMLSize_t length, bool isCData) {
  XercesDOMParser::docCharacters(units, length, isCData);
}

xc::DOMAttr* TreeBuilder::createAttr(const XMLCh* name) {
  return XercesDOMParser::createAttr(name);
}

xc::DOMElement* TreeBuilder::NewElement(const xc::XMLElementDecl& declaration) {
  return createElement(declaration.getFullName());
}

}  // namespace qv
