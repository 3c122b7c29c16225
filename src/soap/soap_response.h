// The result of one call, and the parser of the answer's text.
#pragma once

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"
#include "xml/xml_node.h"

namespace qv {

class AnswerDocument;

class CSOAPResponse {
 public:
  void SetText(const WideString& action, WideString text, bool fromFile);
  // Sets the value, or throws: EQvException for a fault, for text that is not an answer and for a parse error
  // ("Error at file ..."); a DOM exception of the XML library passes through.
  void ParseText();
  Variant Value() const { return value_; }
  const WideString& Cookie() const { return cookie_; }

 private:
  void Parse();
  void ReadNodes(const AnswerDocument& answerDocument);
  void ReadAnswer(const XmlNode& answer, const XmlNode& documentElement);

  WideString action_;
  WideString text_;
  WideString cookie_;  // reserved for a server's cookie; never set
  Variant value_;
  bool fromFile_ = false;
};

// Throws the fault in `document`.
[[noreturn]] void DeserializeFault(const XmlNode& document);

// For `catch (...)` around ParseText: converts the failure. Clauses in this order: SAXParseException, DOM
// exception, EQvException, WideString, anything else.
[[noreturn]] void RethrowAsResponseFailure();

}  // namespace qv
