// Iterates over a document in document order without a stack, so its depth needs no memory.
#pragma once

#include "xml/xml_node.h"

namespace qv {

class XmlWalk {
 public:
  // Starts at `root`, which may be null; visits only it and its descendants.
  explicit XmlWalk(const XmlNode& root) : root_(root), node_(root) {}
  // Null at the end.
  const XmlNode& Node() const { return node_; }
  void Next();

 private:
  XmlNode root_;
  XmlNode node_;
};

// The element of a document node; null if there is none.
XmlNode DocumentElement(const XmlNode& document);

}  // namespace qv
