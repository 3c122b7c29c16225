#include "xml/xml_walk.h"

#include "xml/node_links.h"

namespace qv {

namespace xc = XERCES_CPP_NAMESPACE;

void XmlWalk::Next() {
  if (node_.IsNull()) return;
  const xc::DOMNode* const root = root_.DomNode();
  const xc::DOMNode* node = node_.DomNode();
  const xc::DOMNode* next = FirstChildOf(node);
  while (next == nullptr && node != root) {
    next = NextSiblingOf(node);
    if (next == nullptr) node = ParentOf(node);
  }
  node_ = XmlNode(next);
}

XmlNode DocumentElement(const XmlNode& document) {
  XmlNode node = document.FirstChild();
  while (!node.IsNull() && node.NodeType() != XmlNode::kElement) node = node.NextSibling();
  return node;
}

}  // namespace qv
