#include "xml/xml_node.h"

#include <string>

#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "xml/node_links.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

std::u16string_view ViewOf(const XMLCh* units) {
  return units == nullptr ? std::u16string_view() : std::u16string_view(units);
}

// Most requested names are short; longer ones need an allocation.
class TerminatedName {
 public:
  explicit TerminatedName(std::u16string_view name) {
    if (name.size() < kShort) {
      name.copy(short_, name.size());
      short_[name.size()] = 0;
    } else {
      long_ = name;
    }
  }
  const char16_t* Units() const noexcept { return long_.empty() ? short_ : long_.c_str(); }

 private:
  static constexpr std::size_t kShort = 32;
  char16_t short_[kShort];
  std::u16string long_;
};

}  // namespace

int XmlNode::NodeType() const {
  return node_ == nullptr ? int{kNone} : static_cast<int>(node_->getNodeType());
}

std::u16string_view XmlNode::Name() const {
  return node_ == nullptr ? std::u16string_view() : ViewOf(node_->getNodeName());
}

std::u16string_view XmlNode::Value() const {
  if (node_ == nullptr) return {};
  const int type = node_->getNodeType();
  if (type == kElement) return {};
  if (type == kText || type == kCData) {  // these know their length
    const auto* text = static_cast<const xc::DOMText*>(node_);
    return {text->getData(), text->getLength()};
  }
  return ViewOf(node_->getNodeValue());
}

bool XmlNode::HasValue() const {
  return node_ != nullptr && node_->getNodeValue() != nullptr;
}

XmlNode XmlNode::FirstChild() const {
  return node_ == nullptr ? XmlNode() : XmlNode(FirstChildOf(node_));
}

XmlNode XmlNode::LastChild() const {
  return node_ == nullptr ? XmlNode() : XmlNode(node_->getLastChild());
}

XmlNode XmlNode::NextSibling() const {
  return node_ == nullptr ? XmlNode() : XmlNode(NextSiblingOf(node_));
}

XmlNode XmlNode::Parent() const {
  return node_ == nullptr ? XmlNode() : XmlNode(ParentOf(node_));
}

bool XmlNode::HasAttributeMap() const {
  return node_ != nullptr && node_->getAttributes() != nullptr;
}

XmlNode XmlNode::Attribute(std::u16string_view qualifiedName) const {
  const xc::DOMNamedNodeMap* map = node_ == nullptr ? nullptr : node_->getAttributes();
  if (map == nullptr || qualifiedName.find(u'\0') != std::u16string_view::npos) return {};
  return XmlNode(map->getNamedItem(TerminatedName(qualifiedName).Units()));
}

bool operator==(const XmlNode& a, const XmlNode& b) noexcept {
  return a.node_ == b.node_;
}

XmlNode FirstTextChild(const XmlNode& node) {
  XmlNode child = node.FirstChild();
  while (!child.IsNull() && child.NodeType() != XmlNode::kText) child = child.NextSibling();
  return child;
}

std::u16string_view GetNodeText(const XmlNode& node) {
  XmlNode last;
  for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
    if (child.NodeType() == XmlNode::kText) return child.Value();
    last = child;
  }
  return last.IsNull() ? node.Value() : last.Value();
}

}  // namespace qv
