// The description of the service, for programs that generate clients.
#pragma once

#include <string>

#include "devservice/soap/namespaces.h"

namespace qv::devservice {

// The WSDL 1.1 of the service at an address (a URL): document style, literal, the three methods. The value of
// a parameter and the answer of a script have the type xsd:anyType there. Pure; any thread.
std::string WriteWsdl(const Namespaces& spaces, const std::string& address);

}  // namespace qv::devservice
