// The library's only parser. It parses a document from memory (an answer) or from a file (a script document),
// without namespaces, validation and schemas. A document from memory without a document type gets a compact
// tree; all others get the XML library's. It catches only its own memory limit: SAXParseException from
// the handler, DOMException and XMLException of the XML library reach the caller. Use a parser for one
// document; after a failure it is unusable. It owns the document, even one that was adopted from it. Used by
// one thread, in one scope, with the library started (XmlLibraryGuardScope). The constructor throws the XML
// library's OutOfMemoryException, which does not derive from std::exception, for lack of memory.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include "qvscriptwells/wide_string.h"
#include "xml/compact_tree.h"
#include "xml/parse_memory.h"
#include "xml/parse_memory_manager.h"
#include "xml/qv_dom_error_handlers.h"
#include "xml/xml_node.h"

namespace qv {

// The parser's first base class, so that its memory is created first and destroyed last.
class ParseMemoryOwner {
 protected:
  ParseMemory& Memory() noexcept { return memory_; }
  const ParseMemory& Memory() const noexcept { return memory_; }
  ParseMemoryManager* Manager() noexcept { return &manager_; }

 private:
  ParseMemory memory_;
  ParseMemoryManager manager_{memory_};
};

class QvDomParser : private ParseMemoryOwner, public XERCES_CPP_NAMESPACE_QUALIFIER XercesDOMParser {
 public:
  // Sets its own error handler, so errors are thrown even if the caller sets none.
  QvDomParser();
  ~QvDomParser() override;
  QvDomParser(const QvDomParser&) = delete;
  QvDomParser& operator=(const QvDomParser&) = delete;

  using XercesDOMParser::parse;

  // Parses a server's answer, which is not trusted: nothing external is opened, at most kMaxEntityExpansions
  // entity references are expanded (character references and the five predefined entities do not count), and
  // memory is limited, as are the counts that cost quadratic time. Exceeding a limit throws a
  // SAXParseException with the position that parsing had reached. `bufferId` is the system id of error
  // reports, ASCII. The encoding that an XML declaration names is ignored. The text must outlive this call
  // only.
  void ParseHostileText(std::u16string_view text, const char* bufferId);

  // Parses the local, regular file of a name in UTF-8. A file URL (file_url.h) names an absolute file; any
  // other name is an absolute or relative path. The system id is the name with "file:///" before it, or the
  // unchanged name if it is a URL or contains "#" or "?". `reuse` lets the library use cached grammars.
  // Access to a network, or a file that cannot be opened, is a SAXParseException at line 0. More than
  // kMaxExpansionsOfFile references, or one of the counts below, fails as in an answer; more than kMostBytes
  // of memory fails with the XML library's OutOfMemoryException. EQvException for names that FileNameToUrl
  // rejects.
  void parse(const char* fileName, bool reuse);

  // Call before the parse of a document with a secret: the destructor then clears the parser's memory.
  void ClearMemoryAtEnd() noexcept { Memory().ClearAtEnd(); }

  // Memory of the parser and its document; for tests and measurements.
  std::size_t BytesInUse() const noexcept { return Memory().BytesInUse(); }

  // The document of the last parse, or a null node. After a failure it may be incomplete, or null.
  XmlNode Document() const;
  // False if the document certainly has no element of this name, so that a search can be skipped.
  bool MayHold(std::u16string_view elementName) const;

  // The memory limit in bytes for a text of that many units: at most kMostBytes, or 16 per unit if that is
  // more. The host may have set less for its thread (xml_memory.h).
  static std::size_t MemoryCeilingFor(std::size_t units) noexcept;

  static constexpr std::size_t kMaxEntityExpansions = 64;
  static constexpr std::size_t kMaxExpansionsOfFile = 10000;
  static constexpr std::size_t kMostBytes = std::size_t{2} << 30;
  // The library stores these in hash tables of fixed size or in lists, so the total cost is quadratic.
  static constexpr std::size_t kMaxElementNames = 16384;
  static constexpr std::size_t kMaxAttributesOfElement = 4096;
  static constexpr std::size_t kMaxDeclarations = 4096;

  // As in the base class, but the exception's texts outlive the parser.
  void error(unsigned int code, const XMLCh* domain,
             XERCES_CPP_NAMESPACE_QUALIFIER XMLErrorReporter::ErrTypes type, const XMLCh* text,
             const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line, XMLFileLoc column) override;
  // They build a compact tree, or call the base class; they also check the limits of untrusted texts.
  void startElement(
      const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl& declaration, unsigned int uriId,
      const XMLCh* prefix,
      const XERCES_CPP_NAMESPACE_QUALIFIER RefVectorOf<XERCES_CPP_NAMESPACE_QUALIFIER XMLAttr>& attributes,
      XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
  void endElement(const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl& declaration, unsigned int uriId,
                  bool isRoot, const XMLCh* prefix) override;
  void docCharacters(const XMLCh* units, XMLSize_t length, bool isCData) override;
  void docComment(const XMLCh* comment) override;
  void docPI(const XMLCh* target, const XMLCh* data) override;
  // As in the base class, but with the refusals of a hostile text.
  void XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone,
               const XMLCh* actualEncoding) override;
  void doctypeDecl(const XERCES_CPP_NAMESPACE_QUALIFIER DTDElementDecl& root, const XMLCh* publicId,
                   const XMLCh* systemId, bool hasInternalSubset, bool hasExternalSubset) override;
  void doctypeWhitespace(const XMLCh* units, XMLSize_t length) override;
  void attDef(const XERCES_CPP_NAMESPACE_QUALIFIER DTDElementDecl& element,
              const XERCES_CPP_NAMESPACE_QUALIFIER DTDAttDef& attribute, bool isIgnored) override;
  void elementDecl(const XERCES_CPP_NAMESPACE_QUALIFIER DTDElementDecl& element, bool isIgnored) override;
  void entityDecl(const XERCES_CPP_NAMESPACE_QUALIFIER DTDEntityDecl& entity, bool isParameterEntity,
                  bool isIgnored) override;
  void notationDecl(const XERCES_CPP_NAMESPACE_QUALIFIER XMLNotationDecl& notation, bool isIgnored) override;

 protected:
  // An attribute with a copy of its name: the library's table of names has 257 places, so a document in which
  // every attribute has another name would take time by the square of its length.
  XERCES_CPP_NAMESPACE_QUALIFIER DOMAttr* createAttr(const XMLCh* name) override;

 private:
  void ParseBytesOfFile(const std::string& bytes, const WideString& systemId);
  void Disarm(std::size_t units);
  void StartTree(std::size_t units);
  void UseLibraryTree();
  CompactTree::Index NameOfElement(const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl& declaration);
  CompactTree::Index NameOfAttribute(std::u16string_view name);
  // Limits the expansion of a small document.
  void LimitGrowth(std::size_t expansions);
  bool IsLimited() const noexcept { return maxExpansions_ != 0; }
  void CountDeclaration();
  [[noreturn]] void Refuse(const char16_t* why);

  QvDOMErrorHandlers ownHandler_;
  XERCES_CPP_NAMESPACE_QUALIFIER SecurityManager expansionLimit_;
  std::u16string bufferId_;
  std::size_t declarations_ = 0;
  std::size_t maxExpansions_ = 0;  // 0: no limits
  bool isHostile_ = false;
  bool isCompact_ = false;   // the document goes into the tree
  bool isFinished_ = false;  // and is there, whole
  CompactTree tree_;
  ParseArray<CompactTree::Index> elementNames_;  // in the order of the scanner's numbers
  static constexpr std::size_t kRecentNames = 256;
  CompactTree::Index recentNames_[kRecentNames] = {};  // of attributes, each plus 1
};

}  // namespace qv
