// The library's parser with a faster way to build the library's own nodes: the nodes that make up nearly
// every document (elements, attributes, text) are linked through their known types. The library finds the
// parts of each node by run-time casts instead, which is where most of its time goes. Documents come out the
// same; whatever is rarer (comments, references to entities, attributes with declarations) goes to the
// library's code.
#pragma once

#include <xercesc/parsers/XercesDOMParser.hpp>

namespace qv {

class TreeBuilder : public XERCES_CPP_NAMESPACE_QUALIFIER XercesDOMParser {
 public:
  using XERCES_CPP_NAMESPACE_QUALIFIER XercesDOMParser::XercesDOMParser;

  void startDocument() override;
  void startElement(
      const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl& declaration, unsigned int uriId,
      const XMLCh* prefix,
      const XERCES_CPP_NAMESPACE_QUALIFIER RefVectorOf<XERCES_CPP_NAMESPACE_QUALIFIER XMLAttr>& attributes,
      XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
  void endElement(const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl& declaration, unsigned int uriId,
                  bool isRoot, const XMLCh* prefix) override;
  void docCharacters(const XMLCh* units, XMLSize_t length, bool isCData) override;

 protected:
  // An attribute with a copy of its name: the library's table of names has 257 places, so a document in which
  // every attribute has another name would take time by the square of its length.
  XERCES_CPP_NAMESPACE_QUALIFIER DOMAttr* createAttr(const XMLCh* name) override;

 private:
  // The document's own copy of the name of a declaration that came up lately.
  struct KnownName {
    const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl* declaration;
    const XMLCh* name;
  };
  static constexpr unsigned kKnownNames = 64;

  XERCES_CPP_NAMESPACE_QUALIFIER DOMElement* NewElement(
      const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl& declaration);

  [[maybe_unused]] KnownName knownNames_[kKnownNames] = {};  // of this document
};

}  // namespace qv
