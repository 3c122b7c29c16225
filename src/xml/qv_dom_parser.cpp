#include "xml/qv_dom_parser.h"

#include <algorithm>
#include <limits>
#include <string>

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/impl/DOMDocumentImpl.hpp>
#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "qvscriptwells/xml_memory.h"
#include "xml/text_input_source.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

// Measured: 30 bytes for a unit of a table, 3 for a unit of long text, 55 for the densest flat markup
// ("<a/>"), 90 for nested start tags. So below 32 million units only a document of hundreds of thousands of
// levels reaches the limit.
constexpr std::size_t kBytesPerUnit = 64;
constexpr std::size_t kBytesForAnyText = std::size_t{64} << 20;
// For texts of more than 128 million units, which are always tables: a table needs 13 bytes for a unit.
constexpr std::size_t kBytesPerUnitOfLarge = 16;
constexpr std::size_t kLargestUnits = std::numeric_limits<std::size_t>::max() / kBytesPerUnitOfLarge;

}  // namespace

QvDomParser::QvDomParser() : XercesDOMParser(nullptr, Manager()), ownHandler_(true), tree_(Memory()) {
  setErrorHandler(&ownHandler_);
  setValidationScheme(Val_Never);
}

QvDomParser::~QvDomParser() = default;

std::size_t QvDomParser::MemoryCeilingFor(std::size_t units) noexcept {
  const std::size_t small =
      kBytesForAnyText + std::min(units, (kMostBytes - kBytesForAnyText) / kBytesPerUnit) * kBytesPerUnit;
  const std::size_t large = std::min(units, kLargestUnits) * kBytesPerUnitOfLarge;
  return std::max(small, large);
}

void QvDomParser::ParseHostileText(std::u16string_view text, const char* bufferId) {
  bufferId_.assign(bufferId, bufferId + std::char_traits<char>::length(bufferId));
  Disarm(text.size());
  try {
    StartTree(text.size());
    parse(TextInputSource(text, bufferId_.c_str(), Manager()));
    if (isCompact_) tree_.Finish();
    isFinished_ = true;
  } catch (const xc::OutOfMemoryException&) {
    Refuse(u"The document needs more memory than it may have.");
  } catch (const xc::DOMException&) {
    Refuse(u"The document cannot be built.");  // its position is no longer known
  }
}

// Without default resolution the library fails instead of opening a file or a connection.
void QvDomParser::Disarm(std::size_t units) {
  isHostile_ = true;
  if (getErrorHandler() == nullptr) setErrorHandler(&ownHandler_);  // else errors would be ignored
  LimitGrowth(kMaxEntityExpansions);
  setDisableDefaultEntityResolution(true);
  Memory().SetLimit(std::min(ThreadXmlMemoryCeiling(), MemoryCeilingFor(units)));
}

void QvDomParser::LimitGrowth(std::size_t expansions) {
  maxExpansions_ = expansions;
  expansionLimit_.setEntityExpansionLimit(expansions);
  setSecurityManager(&expansionLimit_);
}

// The scanner stops where a callback or an allocation fails, so it still knows the position.
void QvDomParser::Refuse(const char16_t* why) {
  xc::ReaderMgr::LastExtEntityInfo place;
  getScanner()->getReaderMgr()->getLastExtEntityInfo(place);
  const xc::SAXParseException refusal(why, nullptr, bufferId_.c_str(), place.lineNumber, place.colNumber);
  getErrorHandler()->fatalError(refusal);
  throw xc::SAXParseException(refusal);  // even if the handler would have continued
}

XmlNode QvDomParser::Document() const {
  if (!isCompact_) return XmlNode(fDocument);
  return isFinished_ ? XmlNode(tree_, CompactTree::kDocumentIndex) : XmlNode();
}

bool QvDomParser::MayHold(std::u16string_view elementName) const {
  return !isCompact_ || tree_.HasElementNamed(elementName);
}

void QvDomParser::error(unsigned int /*code*/, const XMLCh* /*domain*/, xc::XMLErrorReporter::ErrTypes type,
                        const XMLCh* text, const XMLCh* systemId, const XMLCh* publicId, XMLFileLoc line,
                        XMLFileLoc column) {
  const xc::SAXParseException report(text, publicId, systemId, line, column);
  xc::ErrorHandler* handler = getErrorHandler();  // never null: without a handler the library reports nothing
  if (type == xc::XMLErrorReporter::ErrType_Warning) {
    handler->warning(report);
  } else if (type == xc::XMLErrorReporter::ErrType_Fatal) {
    handler->fatalError(report);
  } else {
    handler->error(report);
  }
}

// The scanner accepts any version 1.x; the document throws DOMException for some.
void QvDomParser::XMLDecl(const XMLCh* version, const XMLCh* encoding, const XMLCh* standalone,
                          const XMLCh* actualEncoding) {
  try {
    XercesDOMParser::XMLDecl(version, encoding, standalone, actualEncoding);
  } catch (const xc::DOMException&) {
    if (!isHostile_) throw;
    Refuse(u"The version of XML is not supported.");
  }
}

// The document rejects some names that the scanner accepts.
void QvDomParser::doctypeDecl(const xc::DTDElementDecl& root, const XMLCh* publicId, const XMLCh* systemId,
                              bool hasInternalSubset, bool hasExternalSubset) {
  if (isCompact_) UseLibraryTree();
  try {
    XercesDOMParser::doctypeDecl(root, publicId, systemId, hasInternalSubset, hasExternalSubset);
  } catch (const xc::DOMException&) {
    if (!isHostile_) throw;
    Refuse(u"The name of the document type is not valid.");
  }
}

// The library counts references in the content only. A parameter entity has white space around it, which is
// reported here. Each entity is read by a new reader; readers are numbered, and the document's is 1.
void QvDomParser::doctypeWhitespace(const XMLCh* units, XMLSize_t length) {
  if (IsLimited() && getScanner()->getReaderMgr()->getCurrentReaderNum() > maxExpansions_ + 1) {
    Refuse(u"The document refers to too many parameter entities.");
  }
  XercesDOMParser::doctypeWhitespace(units, length);
}

void QvDomParser::CountDeclaration() {
  if (IsLimited() && ++declarations_ > kMaxDeclarations) Refuse(u"The document has too many declarations.");
}

void QvDomParser::attDef(const xc::DTDElementDecl& element, const xc::DTDAttDef& attribute, bool isIgnored) {
  CountDeclaration();
  XercesDOMParser::attDef(element, attribute, isIgnored);
}

void QvDomParser::elementDecl(const xc::DTDElementDecl& element, bool isIgnored) {
  CountDeclaration();
  XercesDOMParser::elementDecl(element, isIgnored);
}

void QvDomParser::entityDecl(const xc::DTDEntityDecl& entity, bool isParameterEntity, bool isIgnored) {
  CountDeclaration();
  XercesDOMParser::entityDecl(entity, isParameterEntity, isIgnored);
}

void QvDomParser::notationDecl(const xc::XMLNotationDecl& notation, bool isIgnored) {
  CountDeclaration();
  XercesDOMParser::notationDecl(notation, isIgnored);
}

}  // namespace qv
