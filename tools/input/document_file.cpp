#include "tools/input/document_file.h"

#include <algorithm>

#include "tools/report/failure.h"
#include "tools/system/local_files.h"

namespace qv::cli {

namespace {

constexpr std::int64_t kLongestDocument = std::int64_t{64} << 20;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

std::size_t AfterBlanks(const std::string& text, std::size_t at) {
  return std::min(text.find_first_not_of(" \t\r\n", at), text.size());
}

bool BeginsAt(const std::string& text, std::size_t at, const std::string& start) {
  return text.compare(at, start.size(), start) == 0;
}

// The place after an XML declaration or comment at this place; the same if there is none.
std::size_t AfterProlog(const std::string& text, std::size_t at) {
  constexpr const char* kParts[][2] = {{"<?xml", "?>"}, {"<!--", "-->"}};
  for (const auto& [start, end] : kParts) {
    if (!BeginsAt(text, at, start)) continue;
    const std::size_t found = text.find(end, at);
    if (found != std::string::npos) return AfterBlanks(text, found + std::string(end).size());
  }
  return at;
}

}  // namespace

void CheckDocument(const std::string& file) {
  const std::int64_t size = CheckReadable(file, "script document");
  if (size == 0) Refuse("the script document " + file + " is empty");
  if (size > kLongestDocument) Refuse("the script document " + file + " is longer than 64 MB");
}

bool LooksLikeDocument(const std::string& script) {
  std::size_t at = AfterBlanks(script, 0);
  for (std::size_t next = AfterProlog(script, at); next != at; next = AfterProlog(script, at)) at = next;
  return BeginsAt(script, at, "<Scriptwell") || BeginsAt(script, at, "<!DOCTYPE Scriptwell");
}

}  // namespace qv::cli
