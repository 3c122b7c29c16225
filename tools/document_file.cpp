#include "tools/document_file.h"

#include <utf8.h>

#include "tools/failure.h"
#include "tools/local_files.h"

namespace qv::cli {

namespace {

constexpr std::int64_t kLongestDocument = std::int64_t{64} << 20;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

// The library takes these for parts of a URL, or for another name's separator.
void CheckPath(const std::string& path) {
  if (!utf8::is_valid(path.begin(), path.end())) Refuse("the script document's path is not valid UTF-8");
  if (path.find_first_of("#?\\") != std::string::npos)
    Refuse("the script document's path " + path +
           " holds '#', '?' or '\\', which the library cannot open; rename or copy it");
}

}  // namespace

std::string CheckDocument(const std::string& file) {
  const std::string path = AbsolutePath(file, "script document");
  CheckPath(path);
  const std::int64_t size = CheckReadable(file, "script document");
  if (size == 0) Refuse("the script document " + file + " is empty");
  if (size > kLongestDocument) Refuse("the script document " + file + " is longer than 64 MB");
  return "file:///" + path;
}

bool LooksLikeDocument(const std::string& script) {
  constexpr char kBlanks[] = " \t\r\n";
  std::size_t start = script.find_first_not_of(kBlanks);
  if (start != std::string::npos && script.compare(start, 5, "<?xml") == 0) {
    const std::size_t end = script.find("?>", start);
    start = end == std::string::npos ? end : script.find_first_not_of(kBlanks, end + 2);
  }
  return start != std::string::npos && script.compare(start, 11, "<Scriptwell") == 0;
}

}  // namespace qv::cli
