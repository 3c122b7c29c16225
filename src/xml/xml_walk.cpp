#include "xml/xml_walk.h"

namespace qv {

void XmlWalk::Next() {
  const XmlNode child = node_.FirstChild();
  if (!child.IsNull()) {
    node_ = child;
    return;
  }
  while (!(node_ == root_) && node_.NextSibling().IsNull()) node_ = node_.Parent();
  node_ = node_ == root_ ? XmlNode() : node_.NextSibling();
}

XmlNode DocumentElement(const XmlNode& document) {
  XmlNode node = document.FirstChild();
  while (!node.IsNull() && node.NodeType() != XmlNode::kElement) node = node.NextSibling();
  return node;
}

}  // namespace qv
