// Keeps a document's external entities away from the network; local ones resolve as the XML library does.
#pragma once

#include <string_view>

#include <xercesc/util/XMLEntityResolver.hpp>

namespace qv {

// Whether a system id starts with the name of a scheme other than "file", as RFC 3986, 3.1 writes schemes.
// One letter before the colon is a drive and no scheme.
bool NamesNetwork(std::u16string_view systemId);

class LocalEntities : public XERCES_CPP_NAMESPACE_QUALIFIER XMLEntityResolver {
 public:
  // Null for a local entity: the library's own resolution. SAXParseException for one on the network and for a
  // pipe, whose opening could wait for ever.
  XERCES_CPP_NAMESPACE_QUALIFIER InputSource* resolveEntity(
      XERCES_CPP_NAMESPACE_QUALIFIER XMLResourceIdentifier* identifier) override;
};

}  // namespace qv
