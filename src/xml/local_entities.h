// Blocks external entities on the network; the XML library resolves local ones as usual.
#pragma once

#include <string_view>

#include <xercesc/util/XMLEntityResolver.hpp>

namespace qv {

// Whether a system id starts with a scheme (RFC 3986, 3.1) other than "file". One letter before the colon is
// a drive.
bool NamesNetwork(std::u16string_view systemId);

class LocalEntities : public XERCES_CPP_NAMESPACE_QUALIFIER XMLEntityResolver {
 public:
  // Null for a local entity, so that the library resolves it. SAXParseException for one on the network and
  // for a pipe, since opening a pipe may block forever.
  XERCES_CPP_NAMESPACE_QUALIFIER InputSource* resolveEntity(
      XERCES_CPP_NAMESPACE_QUALIFIER XMLResourceIdentifier* identifier) override;
};

}  // namespace qv
