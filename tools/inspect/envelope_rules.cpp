#include <algorithm>
#include <iterator>
#include <string>

#include "tools/inspect/finding.h"
#include "tools/inspect/value_rules.h"
#include "tools/inspect/xml_tree.h"

namespace qv::cli {

namespace {

// Clients find it anywhere.
const XmlNode* FindNamed(const XmlNode& node, std::string_view name) {
  if (node.name == name) return &node;
  for (const XmlNode& child : node.children)
    if (const XmlNode* found = FindNamed(child, name)) return found;
  return nullptr;
}

const XmlNode* FaultIn(const XmlNode& body) {
  if (const XmlNode* fault = FindNamed(body, "soap:Fault")) return fault;
  for (const XmlNode& child : body.children)
    if (LocalName(child.name) == "Fault") return &child;
  return nullptr;
}

// The error object in the text, which is XML again.
bool HasBrokenObject(const std::string& text) {
  constexpr std::string_view kEnd = "</ErrorObject>";
  const std::size_t begin = text.find("<ErrorObject");
  const std::size_t end = text.find(kEnd);
  if (begin == std::string::npos || end == std::string::npos || end < begin) return false;
  return ReadXml(std::string_view(text).substr(begin, end + kEnd.size() - begin)).flaw.has_value();
}

// White space elsewhere in a fault has no effect, and neither has a header.
void FindFaultFaults(const XmlNode& fault, Findings& findings) {
  if (fault.name != "soap:Fault") findings.push_back(At(Rule::kFaultPrefix, fault));
  const XmlNode* text = FindNamed(fault, "faultstring");
  if (text == nullptr)
    findings.push_back(At(Rule::kFaultText, fault));
  else if (HasBrokenObject(text->OwnText()))
    findings.push_back(At(Rule::kFaultText, *text, "its ErrorObject is not well-formed"));
}

void FindSessionFaults(const XmlNode& answer, Findings& findings) {
  FindFirstWhiteSpace(answer, findings);
  const XmlNode* id = answer.FirstElement();
  if (id == nullptr || id->OwnText().empty()) findings.push_back(At(Rule::kSessionId, answer));
}

bool HasName(const XmlNode& answer, const std::string& method) {
  return answer.name == method + "Response" || answer.name == "NS2:" + method + "Response";
}

void FindAnswerFaults(const XmlNode& answer, const std::string& method, Findings& findings) {
  if (!method.empty() && !HasName(answer, method)) findings.push_back(At(Rule::kAnswerName, answer));
  if (method == "CloseUserSession") return;
  if (method == "CreateUserSession") return FindSessionFaults(answer, findings);
  FindFirstWhiteSpace(answer, findings);
  const XmlNode* value = answer.FirstElement();
  std::size_t elements = 0;
  for (const XmlNode& child : answer.children) elements += child.IsElement() ? 1 : 0;
  if (elements != 1) findings.push_back(At(Rule::kOneValue, answer));
  if (value != nullptr) FindValueFaults(*value, findings);
}

const XmlNode* BodyOf(const XmlNode& envelope) {
  const XmlNode* body = nullptr;
  for (const XmlNode& child : envelope.children) {
    if (!child.IsElement()) continue;
    if (LocalName(child.name) == "Body") return &child;
    if (LocalName(child.name) != "Header" && body == nullptr) body = &child;
  }
  return body;
}

void FindHeader(const XmlNode& envelope, Findings& findings) {
  const XmlNode* first = envelope.FirstElement();
  if (first != nullptr && LocalName(first->name) == "Header") findings.push_back(At(Rule::kNoHeader, *first));
}

void FindTreeFaults(const XmlNode& root, const RawAnswer& answer, Findings& findings) {
  const std::string& method = answer.method;
  if (LocalName(root.name) != "Envelope") return findings.push_back(At(Rule::kServicePath, root));
  const bool hasPrefix = root.name == "soap:Envelope" || root.name == "SOAP:Envelope";
  if (!hasPrefix && !HoldsEnvelope(answer.body)) findings.push_back(At(Rule::kEnvelopePrefix, root));
  const XmlNode* body = BodyOf(root);
  if (body == nullptr) return findings.push_back(At(Rule::kServicePath, root, "the envelope has no body"));
  if (const XmlNode* fault = FaultIn(*body)) return FindFaultFaults(*fault, findings);
  FindHeader(root, findings);
  FindFirstWhiteSpace(root, findings);
  // Clients find the id anywhere, and need no answer to a close.
  if (method == "Execute" || method.empty()) FindFirstWhiteSpace(*body, findings);
  const XmlNode* content = body->FirstElement();
  if (content == nullptr) return findings.push_back(At(Rule::kOneValue, *body, "the body is empty"));
  FindAnswerFaults(*content, method, findings);
}

// A page of a web server, such as one that has no such path.
bool IsOther(std::string_view body) {
  using namespace std::string_view_literals;
  static constexpr std::string_view kNames[] = {":Envelope"sv, "<Envelope"sv, "E\0n\0v"sv};
  return std::none_of(std::begin(kNames), std::end(kNames),
                      [&](std::string_view name) { return body.find(name) != std::string_view::npos; });
}

}  // namespace

void FindEnvelopeFaults(const RawAnswer& answer, Findings& findings) {
  if (answer.body.empty()) return;
  const XmlTree tree = ReadXml(answer.body, CharsetOf(answer.head));
  if (tree.root) return FindTreeFaults(*tree.root, answer, findings);
  const Rule rule = IsOther(answer.body) ? Rule::kServicePath : Rule::kWellFormed;
  const std::size_t at = rule == Rule::kServicePath ? 0 : tree.flaw->at;
  findings.push_back({rule, Part::kBody, at, answer.body.size(), tree.flaw->message});
}

}  // namespace qv::cli
