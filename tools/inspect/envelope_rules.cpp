#include <algorithm>
#include <iterator>
#include <string>

#include "tools/inspect/finding.h"
#include "tools/inspect/value_rules.h"
#include "tools/inspect/xml_tree.h"

namespace qv::cli {

namespace {

const XmlNode* FaultIn(const XmlNode& body) {
  for (const XmlNode& child : body.children)
    if (LocalName(child.name) == "Fault") return &child;
  return nullptr;
}

// White space elsewhere in a fault has no effect, and neither has a header.
void FindFaultFaults(const XmlNode& fault, Findings& findings) {
  if (fault.name != "soap:Fault") findings.push_back(At(Rule::kFaultPrefix, fault));
  for (const XmlNode& child : fault.children)
    if (child.name == "faultstring") return;
  findings.push_back(At(Rule::kFaultText, fault));
}

void FindSessionFaults(const XmlNode& answer, Findings& findings) {
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
  FindWhiteSpace(answer, findings);
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
  for (const XmlNode& child : envelope.children)
    if (child.IsElement() && LocalName(child.name) == "Header")
      findings.push_back(At(Rule::kNoHeader, child));
}

void FindTreeFaults(const XmlNode& root, const std::string& method, Findings& findings) {
  if (LocalName(root.name) != "Envelope") return findings.push_back(At(Rule::kServicePath, root));
  if (root.name != "soap:Envelope" && root.name != "SOAP:Envelope")
    findings.push_back(At(Rule::kEnvelopePrefix, root));
  const XmlNode* body = BodyOf(root);
  if (body == nullptr) return findings.push_back(At(Rule::kServicePath, root, "the envelope has no body"));
  if (const XmlNode* fault = FaultIn(*body)) return FindFaultFaults(*fault, findings);
  FindHeader(root, findings);
  FindWhiteSpace(root, findings);
  FindWhiteSpace(*body, findings);
  const XmlNode* answer = body->FirstElement();
  if (answer == nullptr) return findings.push_back(At(Rule::kOneValue, *body, "the body is empty"));
  FindAnswerFaults(*answer, method, findings);
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
  if (tree.root) return FindTreeFaults(*tree.root, answer.method, findings);
  const Rule rule = IsOther(answer.body) ? Rule::kServicePath : Rule::kWellFormed;
  const std::size_t at = rule == Rule::kServicePath ? 0 : tree.flaw->at;
  findings.push_back({rule, Part::kBody, at, answer.body.size(), tree.flaw->message});
}

}  // namespace qv::cli
