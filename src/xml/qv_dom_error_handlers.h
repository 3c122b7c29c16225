// The error handler of every parse: after a warning parsing continues; any error, even a recoverable one,
// ends the parse by throwing a copy of the SAXParseException. Used by one thread, together with its parser.
#pragma once

#include <xercesc/sax/ErrorHandler.hpp>

namespace qv {

class QvDOMErrorHandlers : public XERCES_CPP_NAMESPACE_QUALIFIER ErrorHandler {
 public:
  explicit QvDOMErrorHandlers(bool flag) noexcept : flag_(flag) {}
  ~QvDOMErrorHandlers() override = default;

  void warning(const XERCES_CPP_NAMESPACE_QUALIFIER SAXParseException& exception) override;
  [[noreturn]] void error(const XERCES_CPP_NAMESPACE_QUALIFIER SAXParseException& exception) override;
  [[noreturn]] void fatalError(const XERCES_CPP_NAMESPACE_QUALIFIER SAXParseException& exception) override;
  void resetErrors() override;

  // Set by every event, cleared by resetErrors; starts as the constructor says.
  bool Flag() const noexcept { return flag_; }

 private:
  bool flag_;
};

}  // namespace qv
