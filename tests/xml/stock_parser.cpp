#include "stock_parser.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "xml/qv_dom_parser.h"
#include "xml/text_input_source.h"

namespace qv {

StockParser::StockParser() {
  limit_.setEntityExpansionLimit(QvDomParser::kMaxEntityExpansions);
}

// A parser that has met version 1.1 keeps its rules for all later documents, so the next document gets a new
// one.
XmlNode StockParser::Parse(std::u16string_view text) {
  if (metOtherVersion_) parser_.reset();
  metOtherVersion_ = text.find(u"1.1") != std::u16string_view::npos;
  if (!parser_) Start();
  parser_->resetDocumentPool();
  parser_->parse(TextInputSource(text, u"application/xml", xercesc::XMLPlatformUtils::fgMemoryManager));
  return XmlNode(parser_->getDocument());
}

void StockParser::Start() {
  parser_.emplace();
  parser_->setErrorHandler(&handler_);
  parser_->setValidationScheme(xercesc::XercesDOMParser::Val_Never);
  parser_->setDisableDefaultEntityResolution(true);
  parser_->setSecurityManager(&limit_);
}

}  // namespace qv
