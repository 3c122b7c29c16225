// Reads XML with pugixml, and makes the checks that pugixml leaves to its caller.
#pragma once

#include <optional>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qv::devservice {

// The text is not a well-formed document, or not of the expected form. `what()` is the message.
class XmlError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One parsed document. Its nodes live as long as it does. One thread at a time.
class XmlDocument {
 public:
  // Parses `bytes`. The encoding is `encoding`; for encoding_auto it is that of byte order mark or
  // declaration, else UTF-8. Throws XmlError on errors that pugixml finds, on a document type declaration and
  // on unknown entities. Control characters, and surrogates as references, are accepted, since clients write
  // them.
  explicit XmlDocument(std::string_view bytes, pugi::xml_encoding encoding = pugi::encoding_auto);
  pugi::xml_node Root() const { return document_.document_element(); }

 private:
  pugi::xml_document document_;
};

// The position after the comment, instruction or CDATA section that starts at `at` ("&" means itself in
// these), or `at` itself when none does.
std::size_t SkipLiteralSection(std::string_view bytes, std::size_t at);

// Name without prefix, and the namespace that the prefix (or its absence) means. Throws XmlError when the
// prefix is not declared.
std::string_view LocalName(pugi::xml_node element);
std::string NamespaceOf(pugi::xml_node element);

// Throws XmlError unless the element has this name in this namespace.
void ExpectElement(pugi::xml_node element, std::string_view space, std::string_view name);

// A qualified name in content, such as the value of xsi:type: its namespace (empty without a prefix, whatever
// the default namespace is) and its local part. Throws XmlError when the prefix is not declared.
struct QualifiedName {
  std::string space;
  std::string name;
  bool prefixed = false;
};
QualifiedName ResolveName(pugi::xml_node context, std::string_view text);

// Value of the attribute with this local name in this namespace (empty: no namespace), if there is one.
std::optional<std::string> FindAttribute(pugi::xml_node element, std::string_view space,
                                         std::string_view name);

// The child elements in order. Throws XmlError when there is text other than white space between them.
std::vector<pugi::xml_node> ChildElements(pugi::xml_node parent);

// The text of an element without child elements, as valid UTF-8. Throws XmlError on child elements.
std::string TextOf(pugi::xml_node element);

}  // namespace qv::devservice
