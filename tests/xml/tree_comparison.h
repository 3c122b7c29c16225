// Compares all properties of the nodes of two parsed documents: types, names, values, flags, attributes with
// their order, and every link. Linked nodes are compared by position.
#pragma once

#include <string>

#include <xercesc/dom/DOMNode.hpp>

namespace qv {

// Describes the first difference, with the node's name; empty if there is none. Both may be null.
std::string DifferenceBetween(const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* ours,
                              const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* theirs);

}  // namespace qv
