// Parsing by file name. The host trusts its local files, so the library's defaults hold, less network access.
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>

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
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"), &std::fclose);
  if (file == nullptr) RefuseFile(url, u"The file cannot be opened.");
  std::string bytes;
  std::vector<char> chunk(std::size_t{64} * 1024);
  for (std::size_t got = 1; got != 0;) {
    got = std::fread(chunk.data(), 1, chunk.size(), file.get());
    bytes.append(chunk.data(), got);
  }
  if (std::ferror(file.get()) != 0) RefuseFile(url, u"The file cannot be read.");
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
  xc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(bytes.data()), bytes.size(), url.data(),
                               false);
  source.setCopyBufToStream(false);
  TreeBuilder::parse(source);
}

}  // namespace qv
