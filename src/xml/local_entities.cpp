#include "xml/local_entities.h"

#include <sys/stat.h>

#include <string>

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLURL.hpp>

#include "qvscriptwells/wide_string.h"

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

// Where the library will look: a URL when base and id make one, else a path. A name that it would decode
// first is not found by the caller, who then asks no more.
std::string PathOf(const xc::XMLResourceIdentifier& identifier) {
  const XMLCh* base = identifier.getBaseURI() == nullptr ? u"" : identifier.getBaseURI();
  xc::XMLURL url;
  if (url.setURL(base, identifier.getSystemId(), url) && !url.isRelative()) return ToUtf8(url.getPath());
  return ToUtf8(xc::LocalFileInputSource(base, identifier.getSystemId()).getSystemId());
}

// Opening one without a writer would never end.
bool IsPipe(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 && S_ISFIFO(facts.st_mode);
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
  if (View(identifier->getSystemId()).empty()) return nullptr;
  if (IsPipe(PathOf(*identifier)))
    throw xc::SAXParseException(u"A pipe is no entity.", nullptr, identifier->getSystemId(), 0, 0);
  return nullptr;
}

}  // namespace qv
