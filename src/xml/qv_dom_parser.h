// The one parser of the library: a document from memory (an answer) or from a file (a script document).
// Namespaces, validation and schemas are off. It catches nothing but its own ceiling on memory:
// SAXParseException from the handler, DOMException and XMLException of the XML library go to the caller. One
// parser serves one document: it keeps what it has read until it dies, and after a refusal it is of no
// further use. The document dies with its parser, also one that was adopted from it. Used by one thread, in
// one scope, with the library started (XmlLibraryGuardScope). The constructor throws the XML library's
// OutOfMemoryException, which is no std::exception, when the system has no memory left.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <xercesc/util/SecurityManager.hpp>

#include "qvscriptwells/wide_string.h"
#include "xml/parse_memory.h"
#include "xml/qv_dom_error_handlers.h"
#include "xml/tree_builder.h"
#include "xml/xml_node.h"

namespace qv {

// Comes first among the bases of the parser, so that its memory is there before all of it and goes last.
class ParseMemoryOwner {
 protected:
  ParseMemory& Memory() noexcept { return memory_; }
  const ParseMemory& Memory() const noexcept { return memory_; }

 private:
  ParseMemory memory_;
};

class QvDomParser : private ParseMemoryOwner, public TreeBuilder {
 public:
  // An error handler of its own is in place, so errors are thrown whether or not the caller sets another.
  QvDomParser();
  ~QvDomParser() override;
  QvDomParser(const QvDomParser&) = delete;
  QvDomParser& operator=(const QvDomParser&) = delete;

  using TreeBuilder::parse;

  // Parses an answer that a server sent. The document is disarmed: nothing external is opened, at most
  // kMaxEntityExpansions references to entities are followed (character references and the five predefined
  // names do not count), and memory is limited, as is what the library handles in quadratic time. What is
  // refused is a SAXParseException like any other, with the place that parsing had reached. `bufferId` is the
  // system id of error reports, ASCII. The text is read as it is, whatever encoding an XML declaration in it
  // names; it must outlive this call only.
  void ParseHostileText(std::u16string_view text, const char* bufferId);

  // Parses the local, regular file of a name in UTF-8. A file URL (file_url.h) names an absolute file; any
  // other name is the path as it stands, absolute or relative to the current directory. The system id is the
  // name with "file:///" before it, or as it stands when it is a URL or holds "#" or "?". `reuse` lets the
  // library use grammars that it keeps. Nothing is fetched from a network; that, and a file that cannot be
  // opened, is a SAXParseException at line 0. A document that grows beyond kMaxExpansionsOfFile references,
  // or one of the counts below, is refused as a hostile one is; one beyond kMostBytes of memory fails with
  // the XML library's OutOfMemoryException. EQvException for names that FileNameToUrl refuses.
  void parse(const char* fileName, bool reuse);

  // Before the parse: the document holds a secret, so what was read is cleared when the parser goes.
  void ClearMemoryAtEnd() noexcept { Memory().ClearAtEnd(); }

  // What the parser and its document take; for tests and measurements.
  std::size_t BytesInUse() const noexcept { return Memory().BytesInUse(); }

  // The document of the last parse, null node when there is none.
  XmlNode Document() const;
  // False when no element of the document has this name, as far as that is known without looking: a search
  // for what is not there can be left out.
  bool MayHold(std::u16string_view elementName) const;

  // Bytes that a text of so many units may cost: at most kMostBytes, or 16 a unit where that is more. The
  // host may have set less for its thread (xml_memory.h).
  static std::size_t MemoryCeilingFor(std::size_t units) noexcept;

  static constexpr std::size_t kMaxEntityExpansions = 64;
  static constexpr std::size_t kMaxExpansionsOfFile = 10000;
  static constexpr std::size_t kMostBytes = std::size_t{2} << 30;
  // The library keeps these in tables of fixed size or in order, so their cost grows with the square of their
  // number.
  static constexpr std::size_t kMaxElementNames = 16384;
  static constexpr std::size_t kMaxAttributesOfElement = 4096;
  static constexpr std::size_t kMaxDeclarations = 4096;

  // As in the base class, but what the exception says outlives the parser.
  void error(unsigned int code, const XMLCh* domain,
             XERCES_CPP_NAMESPACE_QUALIFIER XMLErrorReporter::ErrTypes type, const XMLCh* text,
             const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line, XMLFileLoc column) override;
  // As in the base class, but a hostile text meets its limits here.
  void startElement(
      const XERCES_CPP_NAMESPACE_QUALIFIER XMLElementDecl& declaration, unsigned int uriId,
      const XMLCh* prefix,
      const XERCES_CPP_NAMESPACE_QUALIFIER RefVectorOf<XERCES_CPP_NAMESPACE_QUALIFIER XMLAttr>& attributes,
      XMLSize_t attributeCount, bool isEmpty, bool isRoot) override;
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

 private:
  void ParseBytesOfFile(const std::string& bytes, const WideString& systemId);
  void Disarm(std::size_t units);
  // Bounds what a small document can grow to.
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
  bool hasDocumentType_ = false;
  std::vector<std::u16string> elementNames_;  // of a document without document type
};

}  // namespace qv
