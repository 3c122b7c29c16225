#include "xml/xml_walk.h"

namespace qv {

void XmlWalk::Next() {
  if (node_.IsNull()) return;
  XmlNode next = node_.FirstChild();
  while (next.IsNull() && node_ != root_) {
    next = node_.NextSibling();
    if (next.IsNull()) node_ = node_.Parent();
  }
  node_ = next;
}

XmlNode DocumentElement(const XmlNode& document) {
  XmlNode node = document.FirstChild();
  while (!node.IsNull() && node.NodeType() != XmlNode::kElement) node = node.NextSibling();
  return node;
}

}  // namespace qv
