// A walk over a document in document order that keeps no stack, so that depth costs nothing.
#pragma once

#include "xml/xml_node.h"

namespace qv {

class XmlWalk {
 public:
  // Starts at `root`, which may be null; never leaves what is below it.
  explicit XmlWalk(const XmlNode& root) : root_(root), node_(root) {}
  // Null when the walk is over.
  const XmlNode& Node() const { return node_; }
  void Next();

 private:
  XmlNode root_;
  XmlNode node_;
};

// The element of a document node; null when there is none.
XmlNode DocumentElement(const XmlNode& document);

}  // namespace qv
