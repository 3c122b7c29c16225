#include "soap/soap_response.h"

#include <utility>

#include "format/response_value_reader.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "qvscriptwells/secret_text.h"
#include "support/numbers.h"
#include "support/string_helpers.h"
#include "text/join_text.h"
#include "xml/answer_document.h"
#include "xml/xml_parts.h"
#include "xml/xml_walk.h"

namespace qv {
namespace {

constexpr char kBufferId[] = "application/xml";
constexpr std::u16string_view kErrorObjectStart = u"<ErrorObject";
constexpr std::u16string_view kErrorObjectEnd = u"</ErrorObject>";

// Finds the first element of each of three names in one pass.
struct AnswerNodes {
  XmlNode fault;
  XmlNode answer;
  XmlNode prefixedAnswer;
};

struct Wanted {
  std::u16string_view name;
  XmlNode* place;
};

// Whether this element is the first one of that name.
bool Take(const Wanted& wanted, std::u16string_view tag, const XmlNode& element) {
  if (tag != wanted.name || !wanted.place->IsNull()) return false;
  *wanted.place = element;
  return true;
}

// Skips names that the document does not contain, since a table is large; the elements of an answer are near
// its start.
AnswerNodes FindAnswerNodes(const AnswerDocument& document, const WideString& action) {
  const WideString name = JoinText({action.view(), u"Response"});
  const WideString prefixed = JoinText({u"NS2:", name.view()});
  AnswerNodes found;
  const Wanted wanted[] = {
      {u"soap:Fault", &found.fault}, {name.view(), &found.answer}, {prefixed.view(), &found.prefixedAnswer}};
  int missing = 0;
  for (const Wanted& one : wanted) missing += document.MayHold(one.name) ? 1 : 0;
  for (XmlWalk walk(document.Document()); missing != 0 && !walk.Node().IsNull(); walk.Next()) {
    if (walk.Node().NodeType() != XmlNode::kElement) continue;
    const std::u16string_view tag = walk.Node().Name();
    for (const Wanted& one : wanted) missing -= Take(one, tag, walk.Node()) ? 1 : 0;
  }
  return found;
}

// Whether the text contains "SOAP:Envelope" or "soap:Envelope".
bool IsEnvelope(std::u16string_view text) {
  constexpr std::u16string_view kName = u":Envelope";
  constexpr std::size_t kPrefix = 4;
  for (std::size_t at = text.find(kName); at != std::u16string_view::npos; at = text.find(kName, at + 1)) {
    const std::u16string_view before = text.substr(0, at);
    const std::u16string_view prefix = before.substr(at < kPrefix ? 0 : at - kPrefix);
    if (prefix == u"SOAP" || prefix == u"soap") return true;
  }
  return false;
}

// The value of the last element of that name, in document order; false if there is none.
bool LastElementValue(const XmlNode& document, std::u16string_view name, WideString& value) {
  bool found = false;
  for (XmlWalk walk(document); !walk.Node().IsNull(); walk.Next()) {
    if (walk.Node().NodeType() != XmlNode::kElement || walk.Node().Name() != name) continue;
    value = WideString(walk.Node().FirstChild().Value());
    found = true;
  }
  return found;
}

WideString FaultText(const XmlNode& document) {
  WideString text;
  try {
    LastElementValue(document, u"faultstring", text);
  } catch (...) {
    throw EQvException(messages::kUnreadableFault);
  }
  return text;
}

// The error object in the fault text; empty if there is none.
std::u16string_view ErrorObject(std::u16string_view faultText) {
  const std::size_t start = faultText.find(kErrorObjectStart);
  const std::size_t end = faultText.find(kErrorObjectEnd);
  if (start == std::u16string_view::npos || end == std::u16string_view::npos || end < start) return {};
  return faultText.substr(start, end + kErrorObjectEnd.size() - start);
}

[[noreturn]] void RaiseErrorObject(const WideString& faultText, std::u16string_view errorObject) {
  AnswerDocument document;
  document.ReadText(errorObject, kBufferId);
  if (document.Document().IsNull()) throw EQvException(faultText);
  WideString code;
  WideString description = faultText;
  LastElementValue(document.Document(), u"errorCode", code);
  LastElementValue(document.Document(), u"description", description);
  throw EQvException(description, ToInt(code));
}

// The first text child of `node`, or its last child.
XmlNode FindChildOfType(const XmlNode& node, int type) {
  XmlNode child = node.FirstChild();
  XmlNode last = child;
  for (; !child.IsNull(); child = child.NextSibling()) {
    if (child.NodeType() == type) return child;
    last = child;
  }
  return last;
}

// Contains the system id in place of the parser's message; hosts compare this text.
WideString ParseErrorText(const XmlFailure& error) {
  const WideString systemId(error.text);
  const WideString line = DecimalText(static_cast<std::int64_t>(error.line));
  const WideString column = DecimalText(static_cast<std::int64_t>(error.column));
  return JoinText({messages::kErrorAtFile, systemId.view(), u", line ", line.view(), u", char ",
                   column.view(), u"  Message: ", systemId.view()});
}

}  // namespace

void CSOAPResponse::SetText(const WideString& action, WideString text, bool fromFile) {
  action_ = action;
  text_ = std::move(text);
  fromFile_ = fromFile;
}

void CSOAPResponse::ParseText() {
  try {
    Parse();
  } catch (...) {
    RethrowAsResponseFailure();
  }
  text_ = WideString();  // may be large
}

void CSOAPResponse::Parse() {
  AnswerDocument document;
  if (action_.view() == u"CreateUserSession") document.ClearMemoryAtEnd();
  if (fromFile_) {
    document.ReadFile(ToUtf8(text_).c_str());
  } else {
    if (!IsEnvelope(text_.view())) throw EQvException(messages::kInvalidResponse);
    document.ReadText(text_.view(), kBufferId);
  }
  ReadNodes(document);
}

void CSOAPResponse::ReadNodes(const AnswerDocument& answerDocument) {
  const AnswerNodes nodes = FindAnswerNodes(answerDocument, action_);
  const XmlNode document = answerDocument.Document();
  if (!nodes.fault.IsNull()) DeserializeFault(document);
  const XmlNode answer = nodes.answer.IsNull() ? nodes.prefixedAnswer : nodes.answer;
  if (answer.IsNull() || action_.view() == u"CloseUserSession") return;
  ReadAnswer(answer, DocumentElement(document));
}

// A script's result is found by its position: the first child of the envelope's first child.
void CSOAPResponse::ReadAnswer(const XmlNode& answer, const XmlNode& documentElement) {
  if (action_.view() == u"CreateUserSession") {
    const XmlNode text = FindChildOfType(answer.FirstChild(), XmlNode::kText);
    const WideString id(text.Value());
    MarkSecret(id);
    value_ = Variant::FromString(id);
    return;
  }
  value_ = ReadResponseValue(documentElement.FirstChild().FirstChild());
}

void DeserializeFault(const XmlNode& document) {
  const WideString faultText = FaultText(document);
  const std::u16string_view errorObject = ErrorObject(faultText.view());
  if (errorObject.empty()) throw EQvException(faultText);
  RaiseErrorObject(faultText, errorObject);
}

void RethrowAsResponseFailure() {
  try {
    throw;
  } catch (const EQvException&) {
    throw;
  } catch (const WideString& text) {
    throw EQvException(text);
  } catch (...) {
    const XmlFailure failure = CurrentXmlFailure();
    if (failure.kind == XmlFailure::kTree) throw;
    if (failure.kind == XmlFailure::kSyntax) throw EQvException(ParseErrorText(failure));
    throw EQvException(messages::kInvalidResponse);
  }
}

}  // namespace qv
