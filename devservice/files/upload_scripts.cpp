#include "devservice/files/upload_scripts.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "devservice/soap/namespaces.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

struct ScriptFile {
  const char* name;
  const char* comment;
  const char* code;
};

constexpr ScriptFile kScriptFiles[] = {
    {"UploadScript.xml", "Answers the address to which a new file is uploaded.", "uploadUrl()"},
    {"UploadScriptWithoutTicketdId.xml",
     "Answers the address to which a file is uploaded again, in place of the one before.",
     "uploadUrl(parameters.fileTicket)"},
};

[[noreturn]] void ThrowSystem(const std::string& what, const std::string& path, int error) {
  throw std::runtime_error("Cannot " + what + " \"" + path + "\": " + std::strerror(error) + ".");
}

std::string DocumentOf(const ScriptFile& file, const std::string& namespaceHost) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- " + std::string(file.comment) +
         " -->\n<Scriptwell Language=\"JavaScript\" xmlns=\"" + EscapeXml(Namespaces(namespaceHost).script) +
         "\">\n  <Code>" + EscapeXml(file.code) + "</Code>\n</Scriptwell>\n";
}

// A new file beside the target. The destructor deletes it unless it was moved.
class FreshFile {
 public:
  explicit FreshFile(const std::string& target) : path_(target + ".XXXXXX") {
    descriptor_ = mkostemp(path_.data(), O_CLOEXEC);
    if (descriptor_ < 0) ThrowSystem("write", target, errno);
  }
  ~FreshFile() {
    close(descriptor_);
    unlink(path_.c_str());
  }
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;

  void Write(const std::string& bytes) const {
    for (std::size_t done = 0; done < bytes.size();) {
      const ssize_t count = write(descriptor_, bytes.data() + done, bytes.size() - done);
      if (count < 0 && errno != EINTR) ThrowSystem("write", path_, errno);
      if (count > 0) done += static_cast<std::size_t>(count);
    }
    // Every user of the installation reads it.
    if (fchmod(descriptor_, 0644) != 0) ThrowSystem("write", path_, errno);
  }

  // False when the target exists already.
  bool MoveTo(const std::string& target) const {
    if (renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno == EEXIST) return false;
    // The file system does not support the flag.
    if (errno != EINVAL || rename(path_.c_str(), target.c_str()) != 0) ThrowSystem("write", target, errno);
    return true;
  }

 private:
  std::string path_;
  int descriptor_ = -1;
};

bool Exists(const std::string& path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0;
}

bool WriteUnlessThere(const std::string& target, const std::string& document) {
  if (Exists(target)) return false;
  const FreshFile fresh(target);
  fresh.Write(document);
  return fresh.MoveTo(target);
}

}  // namespace

std::vector<std::string> InstallUploadScripts(const std::string& directory,
                                              const std::string& namespaceHost) {
  const std::filesystem::path scripts = std::filesystem::path(directory) / "ClientScripts";
  std::error_code error;
  std::filesystem::create_directories(scripts, error);
  if (error) ThrowSystem("make the directory", scripts.string(), error.value());
  std::vector<std::string> written;
  for (const ScriptFile& file : kScriptFiles) {
    const std::string target = (scripts / file.name).string();
    if (WriteUnlessThere(target, DocumentOf(file, namespaceHost))) written.push_back(target);
  }
  return written;
}

}  // namespace qv::devservice
