#include "support/file_names.h"

#include <string_view>

#include "qvscriptwells/e_qv_exception.h"
#include "text/join_text.h"

namespace qv {
namespace {

constexpr std::u16string_view kFileScheme = u"file:";
constexpr std::u16string_view kFileUrlStart = u"file:///";

FileSource DriveSource(std::u16string_view name) {
  if (name.size() == 2 || name[2] == u'\\') return FileSource::kLocal;
  throw EQvException(u"DetectFileSource - Invalid path or file name");
}

}  // namespace

FileSource DetectFileSource(const WideString& fileName) {
  const std::u16string_view name = fileName.view();
  if (name.empty()) throw EQvException(u"DetectFileSource - File Name is missing");
  if (name[0] == u'\\')
    return name.size() > 1 && name[1] == u'\\' ? FileSource::kNetwork : FileSource::kLocal;
  if (name.size() > 1 && name[1] == u':') return DriveSource(name);
  return name.find(u':') == std::u16string_view::npos ? FileSource::kLocal : FileSource::kUrl;
}

bool IsFileNameURL(const WideString& fileName) {
  if (fileName.IsEmpty()) throw EQvException(u"IsFileNameURL - File Name is missing.");
  return DetectFileSource(fileName) == FileSource::kUrl;
}

WideString FileNameToUrl(const WideString& fileName) {
  const std::u16string_view name = fileName.view();
  if (name.substr(0, kFileScheme.size()) == kFileScheme || IsFileNameURL(fileName)) return fileName;
  return JoinText({kFileUrlStart, name});
}

}  // namespace qv
