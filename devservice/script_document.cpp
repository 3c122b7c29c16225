#include "devservice/script_document.h"

#include <algorithm>

#include "devservice/document_type.h"
#include "devservice/fault_codes.h"
#include "devservice/rendered_document.h"
#include "devservice/xml_reader.h"

namespace qv::devservice {
namespace {

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

void CheckLanguage(pugi::xml_node root) {
  const std::optional<std::string> language = FindAttribute(root, "", "Language");
  if (!language) throw XmlError("the attribute \"Language\" is missing");
  std::string folded = *language;
  std::transform(folded.begin(), folded.end(), folded.begin(), LowerAscii);
  if (folded == "javascript") return;
  throw FaultError(kUnknownLanguage,
                   "The script language \"" + *language + "\" is not known; \"JavaScript\" is.", "request");
}

std::string ReadCode(pugi::xml_node root, const Namespaces& spaces) {
  const std::vector<pugi::xml_node> children = ChildElements(root);
  if (children.size() != 1) throw XmlError("\"Scriptwell\" does not hold exactly one element");
  ExpectElement(children[0], spaces.script, "Code");
  return TextOf(children[0]);
}

}  // namespace

std::string ReadScriptDocument(std::string_view document, const Namespaces& spaces) {
  try {
    // A text has left its encoding behind, whatever its declaration says.
    const XmlDocument parsed(ResolveDocumentType(JoinBytes(document)), pugi::encoding_utf8);
    ExpectElement(parsed.Root(), spaces.script, "Scriptwell");
    CheckLanguage(parsed.Root());
    return ReadCode(parsed.Root(), spaces);
  } catch (const XmlError& error) {
    throw FaultError(kBadScriptDocument,
                     std::string("The script document cannot be read: ") + error.what() + ".", "request");
  }
}

}  // namespace qv::devservice
