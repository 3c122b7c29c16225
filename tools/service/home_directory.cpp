#include "tools/service/home_directory.h"

#include <utf8.h>

#include <stdexcept>

#include "devservice/files/upload_scripts.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/native_path.h"
#include "qvscriptwells/registry.h"
#include "tools/report/failure.h"
#include "tools/system/local_files.h"

#ifndef QV_NAMESPACE_HOST
#error "QV_NAMESPACE_HOST comes from the build"
#endif

namespace qv::cli {

namespace {

constexpr char kScriptFolder[] = "/ClientScripts";
constexpr const char* kScriptNames[] = {"UploadScript.xml", "UploadScriptWithoutTicketdId.xml"};

}  // namespace

std::string HomeDirectory() {
  const WideString home = ReadRegistryValue(kHomeDirectoryKey);
  return home.size() > kLongestHomeDirectory ? std::string() : NativePath(home);
}

std::vector<std::string> UploadScripts(const std::string& home) {
  std::vector<std::string> scripts;
  for (const char* name : kScriptNames) scripts.push_back(home + kScriptFolder + "/" + name);
  return scripts;
}

bool HasUploadScripts(const std::string& home) {
  try {
    CheckHomePath(home);
    for (const std::string& script : UploadScripts(home)) CheckReadable(script, "upload script");
    return true;
  } catch (const Failure&) {
    return false;
  }
}

void CheckHomePath(const std::string& home) {
  const std::string what = "the home directory " + home + " ";
  if (!utf8::is_valid(home.begin(), home.end()))
    throw Failure(ExitStatus::kLocal, "the home directory's path is not valid UTF-8");
  if (home.find_first_of("#?:\\") != std::string::npos)
    throw Failure(ExitStatus::kLocal,
                  what + "holds '#', '?', ':' or '\\', below which the library finds no scripts");
  if (FromUtf8(home).size() > kLongestHomeDirectory)
    throw Failure(ExitStatus::kLocal,
                  what + "has more than " + std::to_string(kLongestHomeDirectory) + " characters");
}

void CheckUploadScripts() {
  const std::string home = HomeDirectory();
  if (home.empty())
    throw Failure(
        ExitStatus::kLocal,
        "a file cannot be uploaded, since no home directory is known: 'scriptwells registry set home "
        "DIR', and put the server's upload scripts into DIR/ClientScripts");
  CheckHomePath(home);
  try {
    CheckReadable(UploadScripts(home).front(), "upload script");
  } catch (const Failure& failure) {
    throw failure.With("; put the server's upload scripts into " + home + kScriptFolder);
  }
}

bool InstallMissingScripts(const std::string& home) {
  try {
    return !devservice::InstallUploadScripts(home, QV_NAMESPACE_HOST).empty();
  } catch (const std::runtime_error& error) {
    std::string reason = error.what();
    if (!reason.empty() && reason.back() == '.') reason.pop_back();
    throw Failure(ExitStatus::kLocal, "the upload scripts are not in place: " + reason);
  }
}

std::string SetHomeDirectory(const std::string& home) {
  try {
    return WriteRegistryValue(kHomeDirectoryKey, FromUtf8(home));
  } catch (const _com_error& error) {
    throw Failure(ExitStatus::kLocal, ToUtf8(error.Description()));
  }
}

}  // namespace qv::cli
