// The library's parser with a faster way to build the library's own nodes: nearly all nodes are elements,
// attributes and text, which are linked through their known types. The library spends most of its time on
// run-time casts for this. The document is the same; the library's code handles rarer cases (comments,
// references to entities, attributes with declarations).
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
  // An attribute with a copy of its name: the library's hash table of names has 257 buckets, so a document in
  // which every attribute has another name would take quadratic time.
  XERCES_CPP_NAMESPACE_QUALIFIER DOMAttr* createAttr(const XMLCh* name) override;

 private:
  // The document's copy of the name of a recently used declaration.
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
