#include "xml/qv_dom_error_handlers.h"

#include <xercesc/sax/SAXParseException.hpp>

namespace qv {

namespace xc = XERCES_CPP_NAMESPACE;

void QvDOMErrorHandlers::warning(const xc::SAXParseException& /*exception*/) {
  flag_ = true;
}

void QvDOMErrorHandlers::error(const xc::SAXParseException& exception) {
  flag_ = true;
  throw xc::SAXParseException(exception);
}

void QvDOMErrorHandlers::fatalError(const xc::SAXParseException& exception) {
  flag_ = true;
  throw xc::SAXParseException(exception);
}

void QvDOMErrorHandlers::resetErrors() {
  flag_ = false;
}

}  // namespace qv
