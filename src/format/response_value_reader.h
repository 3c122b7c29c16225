// Converts the answer element of a response to a value.
#pragma once

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"
#include "xml/xml_node.h"

namespace qv {

// `node` wraps the value element, which is its first child and names its type in "xsi:type". No child, or
// "xsi:null": VT_NULL. A first child that is not an element, or of an unknown type: VT_EMPTY. EQvException,
// code 0: "The node is NULL.", "Scriptwells SOAP module - General Parse fault.", a formater's message, and
// "Cannot deserialize the response." for any other failure.
Variant ReadResponseValue(const XmlNode& node);

// The name of a type attribute in lower case; any name that contains "recordlist" is "sof:recordlist".
WideString ReadTypeName(const XmlNode& attribute);

}  // namespace qv
