// Whether two parsed documents are the same in everything that their nodes tell: types, names, values, flags,
// attributes with their order, and every link. Identity of nodes is compared by place.
#pragma once

#include <string>

#include <xercesc/dom/DOMNode.hpp>

namespace qv {

// What the first difference is about, with the node's name; empty when there is none. Both may be null.
std::string DifferenceBetween(const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* ours,
                              const XERCES_CPP_NAMESPACE_QUALIFIER DOMNode* theirs);

}  // namespace qv
