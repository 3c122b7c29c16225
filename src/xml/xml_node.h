// A node of a parsed document, for other directories: a few operations, no XML library type. A null XmlNode
// means "no node"; every operation on it returns null, empty or 0. Borrowed: a node and its views are valid
// as long as the parser of the document exists.
#pragma once

#include <string_view>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace qv {

class XmlNode {
 public:
  // The numbers of DOM Level 1.
  enum Type { kNone = 0, kElement = 1, kAttribute = 2, kText = 3, kCData = 4, kDocument = 9 };

  XmlNode() noexcept = default;
  explicit XmlNode(const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) noexcept : node_(node) {}

  bool IsNull() const noexcept { return node_ == nullptr; }
  int NodeType() const;               // a Type or another DOM number; kNone for a null node
  std::u16string_view Name() const;   // the qualified name
  std::u16string_view Value() const;  // empty if the node has none
  bool HasValue() const;              // false for a node whose value is null, such as an element
  XmlNode FirstChild() const;
  XmlNode LastChild() const;
  XmlNode NextSibling() const;
  XmlNode Parent() const;
  bool HasAttributeMap() const;                                // true for elements, even without attributes
  XmlNode Attribute(std::u16string_view qualifiedName) const;  // null if absent
  // The XML library's node, for the files of this directory.
  const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* DomNode() const noexcept { return node_; }

 private:
  friend bool operator==(const XmlNode& a, const XmlNode& b) noexcept;

  const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node_ = nullptr;
};

// The same node of the same document, or both null.
bool operator==(const XmlNode& a, const XmlNode& b) noexcept;
inline bool operator!=(const XmlNode& a, const XmlNode& b) noexcept {
  return !(a == b);
}

// The first text child; null if there is none.
XmlNode FirstTextChild(const XmlNode& node);

// The text that a formater reads: the first text child's value; with no text child the value of the last
// child; with no children the node's own value. Empty for a null node.
std::u16string_view GetNodeText(const XmlNode& node);

}  // namespace qv
