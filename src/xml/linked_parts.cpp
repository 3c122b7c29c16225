// The table of the XML library in a program that links it.
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "xml/linked_start.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_library_start.h"
#include "xml/xml_parts.h"
#include "xml/xml_serializer.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

class LinkedDocument : public ParsedDocument {
 public:
  void ReadHostileText(std::u16string_view text, const char* bufferId) override {
    parser_.ParseHostileText(text, bufferId);
  }
  void ReadFile(const char* fileName) override { parser_.parse(fileName, false); }
  void ClearMemoryAtEnd() noexcept override { parser_.ClearMemoryAtEnd(); }
  std::size_t BytesInUse() const noexcept override { return parser_.BytesInUse(); }
  XmlNode Document() const override { return parser_.Document(); }
  bool MayHold(std::u16string_view elementName) const override { return parser_.MayHold(elementName); }

 private:
  QvDomParser parser_;
};

std::unique_ptr<ParsedDocument> NewDocument() {
  return std::make_unique<LinkedDocument>();
}

WideString RenderFile(const char* fileName) {
  QvDOMErrorHandlers handler(true);
  QvDomParser parser;
  CXMLSerializer serializer;
  parser.setErrorHandler(&handler);
  parser.setIncludeIgnorableWhitespace(true);
  parser.parse(fileName, false);
  return serializer.Serialize(parser.Document());
}

XmlFailure CurrentFailure() noexcept {
  try {
    throw;
  } catch (const xc::SAXParseException& error) {
    return {XmlFailure::kSyntax, error.getSystemId(), error.getLineNumber(), error.getColumnNumber()};
  } catch (const xc::DOMException& error) {
    return {XmlFailure::kTree, error.getMessage(), 0, 0};
  } catch (const xc::XMLException& error) {
    return {XmlFailure::kLibrary, error.getMessage(), 0, 0};
  } catch (...) {
    return {};
  }
}

constexpr XmlParts kParts = {InitializeXmlLibrary, TerminateXmlLibrary, NewDocument, RenderFile,
                             CurrentFailure};

}  // namespace

const XmlParts& RequireXmlParts() {
  return kParts;
}

const XmlParts* PresentXmlParts() noexcept {
  return &kParts;
}

}  // namespace qv
