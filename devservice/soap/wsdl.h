// What the service is, for programs that make clients of it.
#pragma once

#include <string>

#include "devservice/soap/namespaces.h"

namespace qv::devservice {

// The WSDL 1.1 of the service at an address (a URL): document style, literal, the three methods. The value of
// a parameter and the answer of a script have no type there but that of their xsi:type. Pure; any thread.
std::string WriteWsdl(const Namespaces& spaces, const std::string& address);

}  // namespace qv::devservice
