#include "xml/xml_serializer.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocumentType.hpp>
#include <xercesc/dom/DOMEntity.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "qvscriptwells/e_qv_exception.h"
#include "xml/serializer_output.h"
#include "xml/task_memory.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

using Formatter = xc::XMLFormatter;
using Output = SerializerOutput;

void PutBetween(Output& out, const XMLCh* before, const XMLCh* text, const XMLCh* after) {
  out.Put(before);
  out.Put(text);
  out.Put(after);
}

void PutQuoted(Output& out, const XMLCh* before, const XMLCh* text) {
  if (text == nullptr) return;
  out.Put(before);
  PutBetween(out, u"\"", text, u"\"");
}

void OpenElement(Output& out, const xc::DOMNode* node) {
  PutBetween(out, u"<", node->getNodeName(), nullptr);
  const xc::DOMNamedNodeMap* attributes = node->getAttributes();
  const XMLSize_t count = attributes->getLength();
  for (XMLSize_t i = 0; i < count; ++i) {
    const xc::DOMNode* attribute = attributes->item(i);
    PutBetween(out, u" ", attribute->getNodeName(), u"=\"");
    out.PutAttribute(attribute->getNodeValue());
    out.Put(u"\"");
  }
  out.Put(node->getFirstChild() == nullptr ? u"/>" : u">");
}

void CloseElement(Output& out, const xc::DOMNode* node) {
  if (node->getFirstChild() != nullptr) PutBetween(out, u"</", node->getNodeName(), u">");
}

void PutText(Output& out, const xc::DOMNode* node) {
  out.PutText(node->getNodeValue());
}

void PutCData(Output& out, const xc::DOMNode* node) {
  PutBetween(out, u"<![CDATA[", node->getNodeValue(), u"]]>");
}

void PutReference(Output& out, const xc::DOMNode* node) {
  PutBetween(out, u"&", node->getNodeName(), u";");
}

// The parts of an entity follow its name without a blank.
void PutEntity(Output& out, const xc::DOMNode* node) {
  const auto* entity = static_cast<const xc::DOMEntity*>(node);
  PutBetween(out, u"<!ENTITY ", node->getNodeName(), nullptr);
  PutQuoted(out, u"PUBLIC ", entity->getPublicId());
  PutQuoted(out, u"SYSTEM ", entity->getSystemId());
  PutQuoted(out, u"NDATA ", entity->getNotationName());
  out.Put(u">\n");
}

void PutInstruction(Output& out, const xc::DOMNode* node) {
  PutBetween(out, u"<?", node->getNodeName(), nullptr);
  const XMLCh* value = node->getNodeValue();
  if (value != nullptr && *value != 0) PutBetween(out, u" ", value, nullptr);
  out.Put(u"?>");
}

void PutComment(Output& out, const xc::DOMNode* node) {
  PutBetween(out, u"<!--", node->getNodeValue(), u"-->");
}

// After the keyword comes the node's value, which a document type does not have.
void PutDocumentType(Output& out, const xc::DOMNode* node) {
  const auto* type = static_cast<const xc::DOMDocumentType*>(node);
  PutBetween(out, u"<!DOCTYPE ", node->getNodeValue(), nullptr);
  const XMLCh* publicId = type->getPublicId();
  if (publicId != nullptr && *publicId == 0) publicId = nullptr;  // the parser's form of no public id
  PutQuoted(out, u" PUBLIC ", publicId);
  PutQuoted(out, publicId == nullptr ? u" SYSTEM " : u" ", type->getSystemId());
  if (type->getInternalSubset() != nullptr) PutBetween(out, u"[", type->getInternalSubset(), u"]");
  out.Put(u">");
}

void PutNothing(Output&, const xc::DOMNode*) {}

struct NodeForm {
  void (*open)(Output& out, const xc::DOMNode* node);
  void (*close)(Output& out, const xc::DOMNode* node);
  short type;
  bool hasChildren;
};

constexpr NodeForm kNodeForms[] = {
    {&OpenElement, &CloseElement, xc::DOMNode::ELEMENT_NODE, true},
    {&PutText, &PutNothing, xc::DOMNode::TEXT_NODE, false},
    {&PutCData, &PutNothing, xc::DOMNode::CDATA_SECTION_NODE, false},
    {&PutReference, &PutNothing, xc::DOMNode::ENTITY_REFERENCE_NODE, false},
    {&PutEntity, &PutNothing, xc::DOMNode::ENTITY_NODE, false},
    {&PutInstruction, &PutNothing, xc::DOMNode::PROCESSING_INSTRUCTION_NODE, false},
    {&PutComment, &PutNothing, xc::DOMNode::COMMENT_NODE, false},
    {&PutNothing, &PutNothing, xc::DOMNode::DOCUMENT_NODE, true},
    {&PutDocumentType, &PutNothing, xc::DOMNode::DOCUMENT_TYPE_NODE, false},
};

const NodeForm& FormOf(const xc::DOMNode* node) {
  if (node != nullptr)
    for (const NodeForm& form : kNodeForms)
      if (form.type == node->getNodeType()) return form;
  throw xc::DOMException(xc::DOMException::NOT_FOUND_ERR);
}

bool IsDocument(const xc::DOMNode* node) {
  return node->getNodeType() == xc::DOMNode::DOCUMENT_NODE;
}

// Closes the nodes that end here and returns the next one; null after `top`.
const xc::DOMNode* NextInOrder(Output& out, const xc::DOMNode* node, const xc::DOMNode* top) {
  for (;;) {
    FormOf(node).close(out, node);
    if (node == top) return nullptr;
    const xc::DOMNode* parent = node->getParentNode();
    if (IsDocument(parent)) out.Put(u"\n");
    if (node->getNextSibling() != nullptr) return node->getNextSibling();
    node = parent;
  }
}

// No recursion, since a document may be deeper than the stack.
void WriteTree(Output& out, const xc::DOMNode* top) {
  const xc::DOMNode* node = top;
  do {
    const NodeForm& form = FormOf(node);
    form.open(out, node);
    const bool descends = form.hasChildren && node->getFirstChild() != nullptr;
    node = descends ? node->getFirstChild() : NextInOrder(out, node, top);
  } while (node != nullptr);
}

}  // namespace

WideString CXMLSerializer::Serialize(const XmlNode& node) {
  TaskMemory memory;  // the formatter leaks the name of its encoding if its constructor fails
  try {
    MemBufFormatTarget target(std::make_unique<xc::XMLBuffer>(MemBufFormatTarget::kCapacity));
    formatter_ = std::make_unique<Formatter>(encoding_, &target, Formatter::NoEscapes,
                                             Formatter::UnRep_CharRef, &memory);
    SerializerOutput out(*formatter_, target);
    WriteTree(out, node.DomNode());
    out.Put(u"\n");
    result_ = WideString(target.view());
    formatter_.reset();
    return result_;
  } catch (...) {
    formatter_.reset();
    throw EQvException(u"Serializetion FAILED");
  }
}

}  // namespace qv
