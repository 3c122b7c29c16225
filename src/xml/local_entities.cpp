#include "xml/local_entities.h"

#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

bool IsLetter(char16_t unit) {
  return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
}
bool StandsInScheme(char16_t unit) {
  return IsLetter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-' || unit == u'.';
}
bool IsFileScheme(std::u16string_view scheme) {
  constexpr std::u16string_view kFile = u"file";
  if (scheme.size() != kFile.size()) return false;
  for (std::size_t i = 0; i < kFile.size(); ++i)
    if ((scheme[i] | 0x20) != kFile[i]) return false;
  return true;
}
std::u16string_view View(const XMLCh* text) {
  return text == nullptr ? std::u16string_view() : text;
}

}  // namespace

bool NamesNetwork(std::u16string_view systemId) {
  std::size_t end = 0;
  while (end < systemId.size() && StandsInScheme(systemId[end])) ++end;
  const bool hasScheme = end > 1 && end < systemId.size() && systemId[end] == u':' && IsLetter(systemId[0]);
  return hasScheme && !IsFileScheme(systemId.substr(0, end));
}

xc::InputSource* LocalEntities::resolveEntity(xc::XMLResourceIdentifier* identifier) {
  if (NamesNetwork(View(identifier->getSystemId())) || NamesNetwork(View(identifier->getBaseURI())))
    throw xc::SAXParseException(u"Network access is not allowed.", nullptr, identifier->getSystemId(), 0, 0);
  return nullptr;
}

}  // namespace qv
