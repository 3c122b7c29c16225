#include "tree_comparison.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "qvscriptwells/wide_string.h"

namespace qv {
namespace {

// Null when they are the same.
const char* DifferenceOfFacts(const XmlNode& ours, const XmlNode& theirs) {
  if (ours.NodeType() != theirs.NodeType()) return "type";
  if (ours.Name() != theirs.Name()) return "name";
  if (ours.Value() != theirs.Value()) return "value";
  if (ours.HasValue() != theirs.HasValue()) return "existence of a value";
  if (ours.HasAttributeMap() != theirs.HasAttributeMap()) return "attribute map";
  if (ours.AttributeCount() != theirs.AttributeCount()) return "count of attributes";
  return nullptr;
}

// The links of a node and those back to it.
const char* DifferenceOfLinks(const XmlNode& ours, const XmlNode& theirs) {
  if (ours.FirstChild().IsNull() != theirs.FirstChild().IsNull()) return "first child";
  if (ours.LastChild().IsNull() != theirs.LastChild().IsNull()) return "last child";
  if (ours.NextSibling().IsNull() != theirs.NextSibling().IsNull()) return "next sibling";
  if (ours.Parent().IsNull() != theirs.Parent().IsNull()) return "parent";
  if (!ours.FirstChild().IsNull() && ours.FirstChild().Parent() != ours) return "parent of the first child";
  if (!ours.LastChild().IsNull() && ours.LastChild().Parent() != ours) return "parent of the last child";
  if (!ours.LastChild().NextSibling().IsNull()) return "sibling of the last child";
  if (ours.NextSibling().IsNull() && !ours.Parent().IsNull() && ours.Parent().LastChild() != ours)
    return "last sibling";
  return nullptr;
}

const char* DifferenceOfNodes(const XmlNode& ours, const XmlNode& theirs) {
  const char* const difference = DifferenceOfFacts(ours, theirs);
  return difference != nullptr ? difference : DifferenceOfLinks(ours, theirs);
}

// With its text child, that has no other way to it.
const char* DifferenceOfAttributes(const XmlNode& ours, const XmlNode& theirs) {
  const xercesc::DOMNode* const element = theirs.DomNode();
  if (!theirs.HasAttributeMap() || element == nullptr) return nullptr;
  for (XMLSize_t i = 0; i < theirs.AttributeCount(); ++i) {
    const XmlNode attribute(element->getAttributes()->item(i));
    const XmlNode own = ours.Attribute(attribute.Name());
    if (own.IsNull()) return "attribute";
    const char* difference = DifferenceOfNodes(own, attribute);
    if (difference == nullptr && !own.FirstChild().IsNull())
      difference = DifferenceOfNodes(own.FirstChild(), attribute.FirstChild());
    if (difference != nullptr) return difference;
  }
  return nullptr;
}

XmlNode NextInOrder(const XmlNode& node) {
  if (!node.FirstChild().IsNull()) return node.FirstChild();
  XmlNode last = node;
  while (!last.IsNull() && last.NextSibling().IsNull()) last = last.Parent();
  return last.NextSibling();
}

}  // namespace

std::string DifferenceBetween(const XmlNode& ours, const XmlNode& theirs) {
  XmlNode left = ours;
  XmlNode right = theirs;
  for (; !left.IsNull() && !right.IsNull(); left = NextInOrder(left), right = NextInOrder(right)) {
    const char* difference = DifferenceOfNodes(left, right);
    if (difference == nullptr) difference = DifferenceOfAttributes(left, right);
    if (difference != nullptr) return std::string(difference) + " at " + ToUtf8(right.Name());
  }
  return left.IsNull() == right.IsNull() ? "" : "end";
}

}  // namespace qv
