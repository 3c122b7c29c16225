#include "support/path_helpers.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

#include "com/guid_text.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/native_path.h"
#include "qvscriptwells/registry.h"
#include "system/system_error_text.h"
#include "text/join_text.h"

namespace qv {
namespace {

constexpr char16_t kSeparator = u'\\';

[[gnu::tls_model("initial-exec")]] thread_local const WideString* threadHome = nullptr;

WideString Variable(const char* name) {
  const char* text = secure_getenv(name);
  return text != nullptr ? FromUtf8(text) : WideString();
}

[[noreturn]] void ThrowNotMade(const WideString& path, int error) {
  throw EQvException(JoinText({u"Cannot create the following directory: ", path.view(),
                               u" due to the following error: ", FromUtf8(SystemErrorText(error)).view()}));
}

int MakeNativeDirectory(const std::string& path, int* error) noexcept {
  const int result = mkdir(path.c_str(), S_IRWXU);
  *error = errno;
  return result;
}

}  // namespace

char16_t PathSeparator() noexcept {
  return kSeparator;
}

WideString AppendPathSeparator(const WideString& path) {
  if (path.IsEmpty() || path.view().back() == kSeparator) return path;
  return JoinText({path.view(), {&kSeparator, 1}});
}

WideString GetTempDirectory() {
  for (const char* name : {"TEMP", "TMP"}) {
    WideString directory = Variable(name);
    if (!directory.IsEmpty()) return directory;
  }
  throw EQvException(u"Failed to get temp directory path. TEMP/TMP environment variable does not exist.");
}

int MakeDirectory(const WideString& path) {
  int error = 0;
  const int result = MakeNativeDirectory(NativePath(path), &error);
  errno = error;  // freeing the native path may have changed it
  return result;
}

WideString TempSubdirectoryName() {
  const WideString guid = NewGuidText();
  const WideString parent = AppendPathSeparator(GetTempDirectory());
  return JoinText({parent.view(), guid.view().substr(1, guid.size() - 2)});
}

void MakeTempSubdirectory(const WideString& directory) {
  if (MakeDirectory(directory) != 0) ThrowNotMade(directory, errno);
}

WideString CreateTempSubdirectory(const WideString&) {
  WideString directory = TempSubdirectoryName();
  MakeTempSubdirectory(directory);
  return directory;
}

WideString GetHomeDirectory() {
  if (threadHome != nullptr) return *threadHome;
  WideString directory = ReadRegistryValue(kHomeDirectoryKey);
  if (directory.size() > kLongestHomeDirectory) return WideString();
  return directory;
}

const WideString* SetThreadHomeDirectory(const WideString* directory) noexcept {
  return std::exchange(threadHome, directory);
}

WideString NewGuidText() {
  Guid id{};
  CoCreateGuid(&id);
  return StringFromIID(id);
}

}  // namespace qv
