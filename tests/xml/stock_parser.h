// The XML library's own parser and tree, set up as the parser of answers is: what documents are compared
// with.
#pragma once

#include <optional>
#include <string_view>

#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include "xml/qv_dom_error_handlers.h"
#include "xml/xml_node.h"

namespace qv {

// One for any number of documents.
class StockParser {
 public:
  StockParser();

  // Valid until the next parse. Throws what the library throws.
  XmlNode Parse(std::u16string_view text);

 private:
  void Start();

  QvDOMErrorHandlers handler_{true};
  xercesc::SecurityManager limit_;
  std::optional<xercesc::XercesDOMParser> parser_;
  bool metOtherVersion_ = false;
};

}  // namespace qv
