// Parsing by file name. The host trusts its local files, so the library's defaults apply, except that network
// access is blocked.
#include <algorithm>
#include <optional>
#include <string>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "qvscriptwells/native_path.h"
#include "qvscriptwells/wide_string.h"
#include "qvscriptwells/xml_memory.h"
#include "support/file_names.h"
#include "system/regular_file.h"
#include "xml/file_url.h"
#include "xml/local_entities.h"
#include "xml/qv_dom_parser.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

[[noreturn]] void RefuseFile(const WideString& systemId, const char16_t* why) {
  throw xc::SAXParseException(why, nullptr, systemId.data(), 0, 0);
}

// A name with a query or a fragment is a URL already.
WideString SystemIdOf(const WideString& name) {
  return xc::XMLString::findAny(name.data(), u"#?") != nullptr ? name : FileNameToUrl(name);
}

// The path in the system's form. Only a URL of the caller is parsed; any other name is the path.
std::string LocalPathOf(const WideString& name, const WideString& systemId) {
  if (IsFileUrl(name.view())) {
    const std::optional<std::string> path = PathOfFileUrl(name.view());
    if (!path) RefuseFile(systemId, u"The URL names no file of this machine.");
    return *path;
  }
  if (NamesNetwork(name.view())) RefuseFile(systemId, u"Only local files are opened.");
  return NativePath(name);
}

std::string ReadWholeFile(const std::string& path, const WideString& systemId) {
  const RegularFile file = OpenRegularFile(path);
  if (file.error != 0) RefuseFile(systemId, u"The file cannot be opened.");
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(file.size));
  const int error = ReadToEnd(file.descriptor.Get(), bytes.max_size() - 1, bytes);
  if (error != 0) RefuseFile(systemId, u"The file cannot be read.");
  return bytes;
}

}  // namespace

void QvDomParser::parse(const char* fileName, bool reuse) {
  static LocalEntities onlyLocal;  // without state
  setXMLEntityResolver(&onlyLocal);
  useCachedGrammarInParse(reuse);
  const WideString name = FromUtf8(fileName);
  const WideString systemId = SystemIdOf(name);
  ParseBytesOfFile(ReadWholeFile(LocalPathOf(name, systemId), systemId), systemId);
}

void QvDomParser::ParseBytesOfFile(const std::string& bytes, const WideString& systemId) {
  bufferId_.assign(systemId.view());
  LimitGrowth(kMaxExpansionsOfFile);
  Memory().SetLimit(std::min(ThreadXmlMemoryCeiling(), kMostBytes));
  xc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(bytes.data()), bytes.size(), systemId.data(),
                               false);
  source.setCopyBufToStream(false);
  XercesDOMParser::parse(source);
}

}  // namespace qv
