#include "face/exchange/upload_scripts.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <cstring>

#include "qvscriptwells/native_path.h"
#include "qvscriptwells/registry.h"
#include "scriptwells/error.h"

namespace scriptwells {

namespace {

constexpr char kScriptFolder[] = "/ClientScripts";
constexpr const char* kScriptNames[] = {"UploadScript.xml", "UploadScriptWithoutTicketdId.xml"};

[[noreturn]] void Refuse(const std::string& message) {
  ErrorDetails details;
  details.remedy = Remedy::kHomeDirectory;
  throw Error(Phase::kLocalFile, message, details);
}

std::string HowToGetThem(const std::string& home) {
  return "; put the server's upload scripts into " + home + kScriptFolder + " (" + kScriptNames[0] + " and " +
         kScriptNames[1] + ")";
}

std::string HomeOfRegistry() {
  const qv::WideString home = qv::ReadRegistryValue(qv::kHomeDirectoryKey);
  if (home.size() > qv::kLongestHomeDirectory) return {};
  return qv::NativePath(home);
}

// The library below takes the path for an address.
void CheckPath(const std::string& home) {
  if (!utf8::is_valid(home.begin(), home.end())) Refuse("the home directory's path is not valid UTF-8");
  if (home.find_first_of("#?:\\") != std::string::npos)
    Refuse("the home directory " + home +
           " holds '#', '?', ':' or '\\', below which the library finds no scripts");
}

// Why the file cannot be read; null if it can. Does not wait for a pipe.
const char* ObstacleAt(const std::string& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return std::strerror(errno);
  struct stat facts = {};
  const int error = ::fstat(descriptor, &facts) == 0 ? 0 : errno;
  ::close(descriptor);
  if (error != 0) return std::strerror(error);
  if (S_ISDIR(facts.st_mode)) return std::strerror(EISDIR);
  return S_ISREG(facts.st_mode) ? nullptr : "Not a regular file";
}

}  // namespace

void CheckUploadScripts(const std::string& home) {
  const std::string used = home.empty() ? HomeOfRegistry() : home;
  if (used.empty())
    Refuse("a file cannot be uploaded, since no home directory is known" + HowToGetThem("DIR"));
  CheckPath(used);
  // A new file needs the first one only.
  const std::string script = used + kScriptFolder + "/" + kScriptNames[0];
  const char* const obstacle = ObstacleAt(script);
  if (obstacle != nullptr)
    Refuse("cannot read the upload script " + script + ": " + obstacle + HowToGetThem(used));
}

}  // namespace scriptwells
