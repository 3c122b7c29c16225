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

int XmlNode::TypeInLibrary() const {
  return IsNull() ? int{kNone} : static_cast<int>(DomNode()->getNodeType());
}

std::u16string_view XmlNode::ValueInLibrary() const {
  const int type = TypeInLibrary();
  if (type == kNone || type == kElement) return {};
  if (type == kText || type == kCData) {  // these know their length
    const auto* text = static_cast<const xc::DOMText*>(DomNode());
    return {text->getData(), text->getLength()};
  }
  return ViewOf(DomNode()->getNodeValue());
}

XmlNode XmlNode::FirstChildInLibrary() const {
  return IsNull() ? XmlNode() : XmlNode(FirstChildOf(DomNode()));
}

XmlNode XmlNode::NextSiblingInLibrary() const {
  return IsNull() ? XmlNode() : XmlNode(NextSiblingOf(DomNode()));
}

std::u16string_view XmlNode::Name() const {
  if (kind_ == kRecord) return Tree().NameOf(index_);
  if (kind_ == kHeldText) return u"#text";
  return IsNull() ? std::u16string_view() : ViewOf(DomNode()->getNodeName());
}

bool XmlNode::HasValue() const {
  if (kind_ == kLibrary) return !IsNull() && DomNode()->getNodeValue() != nullptr;
  const int type = NodeType();
  return type != kElement && type != kDocument;
}

XmlNode XmlNode::LastChild() const {
  if (kind_ == kLibrary) return IsNull() ? XmlNode() : XmlNode(DomNode()->getLastChild());
  const XmlNode first = FirstChild();
  return first.kind_ == kRecord ? At(Tree().LastChildOf(index_)) : first;
}

XmlNode XmlNode::Parent() const {
  if (kind_ == kHeldText) return XmlNode(owner_, index_, kRecord);
  if (kind_ == kLibrary) return IsNull() ? XmlNode() : XmlNode(DomNode()->getParentNode());
  if (index_ == CompactTree::kDocumentIndex || NodeType() == kAttribute) return {};
  return XmlNode(owner_, Tree().ParentOf(index_), kRecord);
}

XmlNode XmlNode::Attribute(std::u16string_view qualifiedName) const {
  if (NodeType() != kElement) return {};
  if (kind_ == kRecord) return At(Tree().AttributeOf(index_, qualifiedName));
  if (qualifiedName.find(u'\0') != std::u16string_view::npos) return {};
  return XmlNode(DomNode()->getAttributes()->getNamedItem(TerminatedName(qualifiedName).Units()));
}

std::size_t XmlNode::AttributeCount() const {
  if (NodeType() != kElement) return 0;
  return kind_ == kRecord ? Tree().AttributeCountOf(index_) : DomNode()->getAttributes()->getLength();
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
