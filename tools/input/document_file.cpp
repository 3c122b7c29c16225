#include "tools/input/document_file.h"

#include <cstring>

#include "tools/report/failure.h"
#include "tools/system/local_files.h"

namespace qv::cli {

namespace {

constexpr std::int64_t kLongestDocument = std::int64_t{64} << 20;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

bool IsPlainInUrls(char unit) noexcept {
  const bool isLetter = (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
  return isLetter || (unit >= '0' && unit <= '9') || std::strchr("/-._~", unit) != nullptr;
}

// The path may hold any byte.
std::string FileUrl(const std::string& path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string url = "file://";
  for (const char unit : path) {
    const auto byte = static_cast<unsigned char>(unit);
    url +=
        IsPlainInUrls(unit) ? std::string(1, unit) : std::string{'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return url;
}

}  // namespace

std::string CheckDocument(const std::string& file) {
  const std::string path = AbsolutePath(file, "script document");
  const std::int64_t size = CheckReadable(file, "script document");
  if (size == 0) Refuse("the script document " + file + " is empty");
  if (size > kLongestDocument) Refuse("the script document " + file + " is longer than 64 MB");
  return FileUrl(path);
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
