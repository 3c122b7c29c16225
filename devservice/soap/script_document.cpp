#include "devservice/soap/script_document.h"

#include <algorithm>

#include "devservice/soap/document_type.h"
#include "devservice/soap/xml_reader.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/text.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kEndOfRendering = "\n\n";

bool IsByte(char16_t unit) {
  return unit <= 0xFF;
}

// Clients send the rendering of a file with every byte of its UTF-8 as one character: "é" arrives as the two
// characters U+00C3 U+00A9. This joins the bytes and returns real UTF-8.
//
// A document that a client made around a script text has whole characters, and an "Ã©" in it may be meant. So
// only a document with all marks of a rendering is changed: two line feeds at its end (one after the root,
// one after the whole; the other kind ends with the root's tag), no character above U+00FF, and characters
// that are valid UTF-8 when read as bytes.
std::string JoinBytes(std::string_view document) {
  std::u16string units;
  if (!EndsWith(document, kEndOfRendering) || !Utf8ToUtf16(document, units) ||
      !std::all_of(units.begin(), units.end(), IsByte))
    return std::string(document);
  std::string bytes;
  bytes.reserve(units.size());
  for (const char16_t unit : units) bytes += static_cast<char>(unit);
  return Utf8ToUtf16(bytes, units) ? bytes : std::string(document);
}

void CheckLanguage(pugi::xml_node root) {
  const std::optional<std::string> language = FindAttribute(root, "", "Language");
  if (!language) throw XmlError("the attribute \"Language\" is missing");
  if (FoldAscii(*language) == "javascript") return;
  throw FaultError(kUnknownLanguage,
                   "The script language \"" + *language + R"(" is not known; "JavaScript" is.)", "request");
}

std::string ReadCode(pugi::xml_node root, const Namespaces& spaces) {
  const std::vector<pugi::xml_node> children = ChildElements(root);
  if (children.size() != 1) throw XmlError(R"("Scriptwell" does not hold exactly one element)");
  ExpectElement(children[0], spaces.script, "Code");
  return TextOf(children[0]);
}

}  // namespace

std::string ReadScriptDocument(std::string_view document, const Namespaces& spaces) {
  try {
    // The document has been decoded already, whatever encoding it declares.
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
