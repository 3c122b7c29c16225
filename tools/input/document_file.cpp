#include "tools/input/document_file.h"

#include "tools/report/failure.h"
#include "tools/system/local_files.h"

namespace qv::cli {

namespace {

constexpr std::int64_t kLongestDocument = std::int64_t{64} << 20;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

}  // namespace

void CheckDocument(const std::string& file) {
  const std::int64_t size = CheckReadable(file, "script document");
  if (size == 0) Refuse("the script document " + file + " is empty");
  if (size > kLongestDocument) Refuse("the script document " + file + " is longer than 64 MB");
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
