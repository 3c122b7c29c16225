// A node of a parsed document, as the rooms above see it: a few operations, no XML library type.
// A null XmlNode stands for "no node"; every operation on it gives null, empty or 0.
// Borrowed: a node and its views live as long as the parser that made the document.
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
  int NodeType() const;               // one of Type or another DOM number; kNone for a null node
  std::u16string_view Name() const;   // the qualified name
  std::u16string_view Value() const;  // empty when the node has none
  bool HasValue() const;              // false for a node whose value is null (an element, say)
  XmlNode FirstChild() const;
  XmlNode LastChild() const;
  XmlNode NextSibling() const;
  XmlNode Parent() const;
  bool HasAttributeMap() const;  // true for elements, also for those without attributes
  XmlNode Attribute(std::u16string_view qualifiedName) const;  // null when absent
  // The XML library's own node, for the files of this room.
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

// The first child that is a text; null when there is none.
XmlNode FirstTextChild(const XmlNode& node);

// The text that a formater reads: the first text child's value; with no text child the value of the last
// child; with no children the node's own value. Empty for a null node.
std::u16string_view GetNodeText(const XmlNode& node);

}  // namespace qv
