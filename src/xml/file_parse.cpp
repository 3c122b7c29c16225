// Parsing by file name. The host trusts its local files, so the library's defaults hold, less network access.
#include <string>
#include <string_view>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "platform/regular_file.h"
#include "qvscriptwells/native_path.h"
#include "qvscriptwells/wide_string.h"
#include "support/file_names.h"
#include "xml/local_entities.h"
#include "xml/qv_dom_parser.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

constexpr std::u16string_view kFileUrlStart = u"file:///";

[[noreturn]] void RefuseFile(const WideString& url, const char16_t* why) {
  throw xc::SAXParseException(why, nullptr, url.data(), 0, 0);
}

std::string ReadWholeFile(const WideString& url) {
  // What stands behind "file:///" is a path of this system: "/a/b" is absolute, "a/b" is relative.
  const std::string path = NativePath(WideString(url.view().substr(kFileUrlStart.size())));
  const RegularFile file = OpenRegularFile(path);
  if (file.error != 0) RefuseFile(url, u"The file cannot be opened.");
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(file.size));
  const int error = ReadToEnd(file.descriptor.Get(), bytes.max_size() - 1, bytes);
  if (error != 0) RefuseFile(url, u"The file cannot be read.");
  return bytes;
}

}  // namespace

void QvDomParser::parse(const char* fileName, bool reuse) {
  static LocalEntities onlyLocal;  // without state
  setXMLEntityResolver(&onlyLocal);
  useCachedGrammarInParse(reuse);
  const WideString name = FromUtf8(fileName);
  // A name with a query or a fragment is a URL already.
  if (xc::XMLString::findAny(name.data(), u"#?") != nullptr) {
    if (NamesNetwork(name.view())) RefuseFile(name, u"Network access is not allowed.");
    TreeBuilder::parse(name.data());
  } else {
    ParseLocalFile(FileNameToUrl(name));
  }
}

void QvDomParser::ParseLocalFile(const WideString& url) {
  if (url.view().substr(0, kFileUrlStart.size()) != kFileUrlStart)
    RefuseFile(url, u"Only local files are opened.");
  const std::string bytes = ReadWholeFile(url);
  bufferId_.assign(url.view());
  LimitGrowth(kMaxExpansionsOfFile);
  Memory().SetLimit(kMostBytes);
  xc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(bytes.data()), bytes.size(), url.data(),
                               false);
  source.setCopyBufToStream(false);
  TreeBuilder::parse(source);
}

}  // namespace qv
