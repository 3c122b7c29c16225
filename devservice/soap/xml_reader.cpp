#include "devservice/soap/xml_reader.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_doctype;

struct Section {
  std::string_view start;
  std::string_view end;
};

// Sections in which "&" means itself.
constexpr Section kLiteralSections[] = {{"<![CDATA[", "]]>"}, {"<!--", "-->"}, {"<?", "?>"}};
// No client sends more, and lookups among attributes are linear.
constexpr std::size_t kMostAttributes = 64;
constexpr std::string_view kEntities[] = {"amp", "lt", "gt", "quot", "apos"};

bool IsCharacterNumber(std::string_view digits, int base) {
  unsigned long value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  return error == std::errc() && end == digits.data() + digits.size() && value > 0 && value <= 0x10FFFF;
}

bool IsReference(std::string_view name) {
  if (name.substr(0, 2) == "#x") return IsCharacterNumber(name.substr(2), 16);
  if (name.substr(0, 1) == "#") return IsCharacterNumber(name.substr(1), 10);
  return std::find(std::begin(kEntities), std::end(kEntities), name) != std::end(kEntities);
}

// pugixml passes unknown references as plain text, so they are checked here.
void CheckReferences(std::string_view bytes) {
  constexpr std::size_t kLongestReference = 16;
  for (std::size_t at = bytes.find_first_of("&<"); at < bytes.size();) {
    std::size_t next = SkipLiteralSection(bytes, at);
    if (bytes[at] == '&') {
      const std::size_t end = bytes.substr(at, kLongestReference).find(';');
      if (end == std::string_view::npos || !IsReference(bytes.substr(at + 1, end - 1))) {
        throw XmlError("a reference at byte " + std::to_string(at) + " is not known");
      }
    }
    at = bytes.find_first_of("&<", std::max(next, at + 1));
  }
}

bool LooksWide(std::string_view bytes) {
  return bytes.size() > 1 && (bytes[0] == 0 || bytes[1] == 0 || bytes.substr(0, 2) == "\xFF\xFE" ||
                              bytes.substr(0, 2) == "\xFE\xFF");
}

void CheckBytes(std::string_view bytes, pugi::xml_encoding encoding) {
  if (encoding == pugi::encoding_auto && LooksWide(bytes)) return;
  if (bytes.find('\0') != std::string_view::npos) throw XmlError("the document holds a null byte");
  CheckReferences(bytes);
}

void CheckAttributes(pugi::xml_node element) {
  std::set<std::string_view> names;
  for (const pugi::xml_attribute attribute : element.attributes()) {
    if (!names.insert(attribute.name()).second) {
      throw XmlError("an attribute \"" + std::string(attribute.name()) + "\" stands twice");
    }
    if (names.size() > kMostAttributes) throw XmlError("an element has too many attributes");
  }
}

// Without recursion, since the sender chooses the depth.
void CheckAllAttributes(pugi::xml_node root) {
  for (pugi::xml_node node = root; node;) {
    if (node.first_attribute()) CheckAttributes(node);
    pugi::xml_node next = node.first_child();
    while (!next && node && node != root) {
      next = node.next_sibling();
      if (!next) node = node.parent();
    }
    node = next;
  }
}

void CheckTop(const pugi::xml_document& document) {
  int roots = 0;
  for (const pugi::xml_node node : document.children()) {
    if (node.type() == pugi::node_doctype) throw XmlError("a document type declaration is not accepted");
    if (node.type() == pugi::node_element) ++roots;
  }
  if (roots != 1) throw XmlError("there is not exactly one root element");
}

std::optional<std::string> NamespaceOfPrefix(pugi::xml_node context, std::string_view prefix) {
  if (prefix == "xml") return std::string(kXmlNamespace);
  const std::string name = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
  for (pugi::xml_node node = context; node; node = node.parent()) {
    if (const pugi::xml_attribute found = node.attribute(name.c_str())) return std::string(found.value());
  }
  return std::nullopt;
}

std::string DeclaredNamespace(pugi::xml_node context, std::string_view prefix) {
  const std::optional<std::string> space = NamespaceOfPrefix(context, prefix);
  if (!space) throw XmlError("the prefix \"" + std::string(prefix) + "\" is not declared");
  return *space;
}

std::string_view PrefixOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? std::string_view{} : name.substr(0, colon);
}

std::string_view LocalPart(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

// Joins surrogates that arrived as two references, and rejects bytes that are not UTF-8.
std::string CleanText(std::string_view text) {
  std::u16string units;
  if (!Utf8ToUtf16(text, units)) throw XmlError("a text is not valid UTF-8");
  return Utf16ToUtf8(units);
}

bool IsText(pugi::xml_node node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

}  // namespace

std::size_t SkipLiteralSection(std::string_view bytes, std::size_t at) {
  for (const Section& section : kLiteralSections) {
    if (bytes.compare(at, section.start.size(), section.start) != 0) continue;
    const std::size_t end = bytes.find(section.end, at + section.start.size());
    return end == std::string_view::npos ? bytes.size() : end + section.end.size();
  }
  return at;
}

XmlDocument::XmlDocument(std::string_view bytes, pugi::xml_encoding encoding) {
  CheckBytes(bytes, encoding);
  const pugi::xml_parse_result result =
      document_.load_buffer(bytes.data(), bytes.size(), kParseOptions, encoding);
  if (!result) {
    throw XmlError("not well-formed at byte " + std::to_string(result.offset) + ": " + result.description());
  }
  CheckTop(document_);
  CheckAllAttributes(Root());
}

std::string_view LocalName(pugi::xml_node element) {
  return LocalPart(element.name());
}

std::string NamespaceOf(pugi::xml_node element) {
  const std::string_view prefix = PrefixOf(element.name());
  if (!prefix.empty()) return DeclaredNamespace(element, prefix);
  return NamespaceOfPrefix(element, prefix).value_or("");
}

void ExpectElement(pugi::xml_node element, std::string_view space, std::string_view name) {
  if (element && LocalName(element) == name && NamespaceOf(element) == space) return;
  throw XmlError("an element \"" + std::string(name) + "\" of the namespace \"" + std::string(space) +
                 "\" is expected" + (element ? ", not \"" + std::string(element.name()) + "\"" : ""));
}

QualifiedName ResolveName(pugi::xml_node context, std::string_view text) {
  const std::string_view prefix = PrefixOf(text);
  QualifiedName result;
  result.name = LocalPart(text);
  result.prefixed = !prefix.empty();
  if (result.prefixed) result.space = DeclaredNamespace(context, prefix);
  return result;
}

std::optional<std::string> FindAttribute(pugi::xml_node element, std::string_view space,
                                         std::string_view name) {
  for (const pugi::xml_attribute attribute : element.attributes()) {
    if (LocalPart(attribute.name()) != name) continue;
    const std::string_view prefix = PrefixOf(attribute.name());
    if (prefix == "xmlns") continue;
    const std::string found = prefix.empty() ? "" : DeclaredNamespace(element, prefix);
    if (found == space) return CleanText(attribute.value());
  }
  return std::nullopt;
}

std::vector<pugi::xml_node> ChildElements(pugi::xml_node parent) {
  std::vector<pugi::xml_node> result;
  for (const pugi::xml_node child : parent.children()) {
    if (child.type() == pugi::node_element) result.push_back(child);
    const std::string_view text = IsText(child) ? child.value() : "";
    if (text.find_first_not_of(" \t\r\n") != std::string_view::npos) {
      throw XmlError("text stands between the elements of \"" + std::string(parent.name()) + "\"");
    }
  }
  return result;
}

std::string TextOf(pugi::xml_node element) {
  std::string text;
  for (const pugi::xml_node child : element.children()) {
    if (IsText(child)) text += child.value();
    if (child.type() == pugi::node_element) {
      throw XmlError("the element \"" + std::string(element.name()) + "\" holds elements in place of text");
    }
  }
  return CleanText(text);
}

}  // namespace qv::devservice
