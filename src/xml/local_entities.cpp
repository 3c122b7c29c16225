#include "xml/local_entities.h"

#include <sys/stat.h>

#include <optional>
#include <string>

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLURL.hpp>

#include "qvscriptwells/wide_string.h"
#include "text/ascii.h"
#include "xml/file_url.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

bool StandsInScheme(char16_t unit) {
  return IsAsciiLetter(unit) || IsAsciiDigit(unit) || unit == u'+' || unit == u'-' || unit == u'.';
}
std::u16string_view View(const XMLCh* text) {
  return text == nullptr ? std::u16string_view() : text;
}

// The path that the library will open: if base and id form a URL, its decoded path; else the path. Nothing if
// it cannot be decoded.
std::optional<std::string> PathOf(const xc::XMLResourceIdentifier& identifier) {
  const XMLCh* base = identifier.getBaseURI() == nullptr ? u"" : identifier.getBaseURI();
  xc::XMLURL url;
  if (url.setURL(base, identifier.getSystemId(), url) && !url.isRelative()) {
    std::string path = ToUtf8(url.getPath());
    return DecodePercents(path) ? std::optional(path) : std::nullopt;
  }
  return ToUtf8(xc::LocalFileInputSource(base, identifier.getSystemId()).getSystemId());
}

// Opening a pipe without a writer would block forever.
bool IsPipe(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 && S_ISFIFO(facts.st_mode);
}

}  // namespace

bool NamesNetwork(std::u16string_view systemId) {
  std::size_t end = 0;
  while (end < systemId.size() && StandsInScheme(systemId[end])) ++end;
  const bool hasScheme =
      end > 1 && end < systemId.size() && systemId[end] == u':' && IsAsciiLetter(systemId[0]);
  return hasScheme && !IsFileUrl(systemId);
}

xc::InputSource* LocalEntities::resolveEntity(xc::XMLResourceIdentifier* identifier) {
  if (NamesNetwork(View(identifier->getSystemId())) || NamesNetwork(View(identifier->getBaseURI())))
    throw xc::SAXParseException(u"Network access is not allowed.", nullptr, identifier->getSystemId(), 0, 0);
  if (View(identifier->getSystemId()).empty()) return nullptr;
  const std::optional<std::string> path = PathOf(*identifier);
  if (!path || IsPipe(*path))
    throw xc::SAXParseException(u"The entity is no file.", nullptr, identifier->getSystemId(), 0, 0);
  return nullptr;
}

}  // namespace qv
