// Compares all properties of the nodes of two parsed documents: types, names, values, attributes, and every
// link. The second document must have the XML library's tree.
#pragma once

#include <string>

#include "xml/xml_node.h"

namespace qv {

// Describes the first difference, with the node's name; empty if there is none. Both may be null.
std::string DifferenceBetween(const XmlNode& ours, const XmlNode& theirs);

}  // namespace qv
