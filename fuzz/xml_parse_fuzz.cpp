// Tests the parser of server answers, and reads every node of accepted documents. Nothing may crash, leak or
// take long, and the links between nodes must agree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <xercesc/sax/SAXParseException.hpp>

#include "input_units.h"
#include "qvscriptwells/xml_library_hold.h"
#include "xml/qv_dom_parser.h"
#include "xml/xml_node.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void Look(const qv::XmlNode& node) {
  Require(node.NodeType() != qv::XmlNode::kNone);
  Require(node.HasAttributeMap() == (node.NodeType() == qv::XmlNode::kElement));
  Require(node.HasValue() || node.Value().empty());
  Require(node.FirstChild().IsNull() == node.LastChild().IsNull());
  const qv::XmlNode type = node.Attribute(u"xsi:type");
  Require(type.IsNull() || GetNodeText(type) == type.Value());
  GetNodeText(node);
  node.Name();
}

// In document order, by links only.
void Walk(const qv::XmlNode& document) {
  qv::XmlNode node = document;
  while (!node.IsNull()) {
    Look(node);
    if (!node.FirstChild().IsNull()) {
      Require(node.FirstChild().Parent() == node);
      node = node.FirstChild();
      continue;
    }
    while (!node.IsNull() && node.NextSibling().IsNull()) {
      Require(node.Parent().IsNull() || node.Parent().LastChild() == node);
      node = node.Parent();
    }
    node = node.NextSibling();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  const std::u16string text = qv::fuzz::UnitsOf(data, size);
  try {
    qv::QvDomParser parser;
    parser.ParseHostileText(text, "application/xml");
    Walk(parser.Document());
  } catch (const XERCES_CPP_NAMESPACE::SAXParseException&) {  // the document may be rejected
  }
  return 0;
}
