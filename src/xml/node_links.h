// Fast access to the links of the library's nodes. Nearly all nodes are elements and text, whose types are
// known here. For the files of this directory.
#pragma once

#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/impl/DOMElementImpl.hpp>
#include <xercesc/dom/impl/DOMTextImpl.hpp>

namespace qv {

// The node must not be null.

inline bool IsElement(const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  return node->getNodeType() == XERCES_CPP_NAMESPACE_QUALIFIER DOMNode::ELEMENT_NODE;
}
inline bool IsText(const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  return node->getNodeType() == XERCES_CPP_NAMESPACE_QUALIFIER DOMNode::TEXT_NODE;
}

// For a node of that type only.
inline XERCES_CPP_NAMESPACE_QUALIFIER DOMElementImpl* AsElement(
    XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  return static_cast<XERCES_CPP_NAMESPACE_QUALIFIER DOMElementImpl*>(node);
}
inline const XERCES_CPP_NAMESPACE_QUALIFIER DOMElementImpl* AsElement(
    const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  return static_cast<const XERCES_CPP_NAMESPACE_QUALIFIER DOMElementImpl*>(node);
}
inline XERCES_CPP_NAMESPACE_QUALIFIER DOMTextImpl* AsText(XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  return static_cast<XERCES_CPP_NAMESPACE_QUALIFIER DOMTextImpl*>(node);
}
inline const XERCES_CPP_NAMESPACE_QUALIFIER DOMTextImpl* AsText(
    const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  return static_cast<const XERCES_CPP_NAMESPACE_QUALIFIER DOMTextImpl*>(node);
}

inline const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* FirstChildOf(
    const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  if (IsElement(node)) return AsElement(node)->fParent.fFirstChild;
  return IsText(node) ? nullptr : node->getFirstChild();
}

inline const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* NextSiblingOf(
    const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* node) {
  if (IsElement(node)) return AsElement(node)->fChild.nextSibling;
  if (IsText(node)) return AsText(node)->fChild.nextSibling;
  return node->getNextSibling();
}

}  // namespace qv
