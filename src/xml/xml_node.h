// A node of a parsed document, for other directories: a few operations, no XML library type. A document has a
// compact tree or the XML library's; nodes of both behave the same. A null XmlNode means "no node"; every
// operation on it returns null, empty or 0. Borrowed: a node and its views are valid as long as the parser of
// the document (AnswerDocument, QvDomParser) and the document's text exist.
#pragma once

#include <cstddef>
#include <string_view>

#include <xercesc/util/XercesDefs.hpp>

#include "xml/compact_tree.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace qv {

class XmlNode {
 public:
  // The numbers of DOM Level 1.
  enum Type { kNone = 0, kElement = 1, kAttribute = 2, kText = 3, kCData = 4, kDocument = 9 };

  XmlNode() noexcept = default;
  explicit XmlNode(const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) noexcept : owner_(node) {}
  XmlNode(const CompactTree& tree, CompactTree::Index index) noexcept : XmlNode(&tree, index, kRecord) {}

  bool IsNull() const noexcept { return owner_ == nullptr; }
  // One of Type or another DOM number; kNone for a null node.
  int NodeType() const {
    if (kind_ == kRecord) return Tree().TypeOf(index_);
    return kind_ == kHeldText ? int{kText} : TypeInLibrary();
  }
  std::u16string_view Name() const;  // the qualified name
  // Empty when the node has none.
  std::u16string_view Value() const {
    if (kind_ == kLibrary) return ValueInLibrary();
    return kind_ == kHeldText || Tree().TypeOf(index_) != kElement ? Tree().ValueOf(index_)
                                                                   : std::u16string_view();
  }
  bool HasValue() const;  // false for a node whose value is null (an element, say)
  XmlNode FirstChild() const {
    if (kind_ == kLibrary) return FirstChildInLibrary();
    if (kind_ == kHeldText) return {};
    return Tree().HoldsText(index_) ? XmlNode(owner_, index_, kHeldText) : At(Tree().FirstChildOf(index_));
  }
  XmlNode LastChild() const;
  XmlNode NextSibling() const {
    if (kind_ == kLibrary) return NextSiblingInLibrary();
    return kind_ == kHeldText ? XmlNode() : At(Tree().NextSiblingOf(index_));
  }
  XmlNode Parent() const;
  bool HasAttributeMap() const { return NodeType() == kElement; }  // also for elements without attributes
  XmlNode Attribute(std::u16string_view qualifiedName) const;      // null when absent
  std::size_t AttributeCount() const;
  // The XML library's own node, for the files of this room; null for one of a compact tree.
  const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* DomNode() const noexcept {
    return kind_ == kLibrary ? static_cast<const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode*>(owner_) : nullptr;
  }

 private:
  enum Kind : std::uint32_t { kLibrary, kRecord, kHeldText };

  friend bool operator==(const XmlNode& a, const XmlNode& b) noexcept {
    return a.owner_ == b.owner_ && a.index_ == b.index_ && a.kind_ == b.kind_;
  }

  XmlNode(const void* owner, CompactTree::Index index, Kind kind) noexcept
      : owner_(owner), index_(index), kind_(kind) {}

  const CompactTree& Tree() const noexcept { return *static_cast<const CompactTree*>(owner_); }
  XmlNode At(CompactTree::Index index) const noexcept {
    return index == CompactTree::kNone ? XmlNode() : XmlNode(owner_, index, kRecord);
  }
  int TypeInLibrary() const;
  std::u16string_view ValueInLibrary() const;
  XmlNode FirstChildInLibrary() const;
  XmlNode NextSiblingInLibrary() const;

  const void* owner_ = nullptr;  // the compact tree, or the library's node
  CompactTree::Index index_ = 0;
  Kind kind_ = kLibrary;
};

inline bool operator!=(const XmlNode& a, const XmlNode& b) noexcept {
  return !(a == b);
}

// The first text child; null if there is none.
XmlNode FirstTextChild(const XmlNode& node);

// The text that a formater reads: the first text child's value; with no text child the value of the last
// child; with no children the node's own value. Empty for a null node.
std::u16string_view GetNodeText(const XmlNode& node);

}  // namespace qv
