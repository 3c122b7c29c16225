#include "tools/manual/shell_words.h"

#include <algorithm>
#include <iterator>

namespace qv::cli {

namespace {

bool IsMember(const std::string& name) {
  return name.find('.') != std::string::npos;
}

}  // namespace

std::string Quoted(const std::string& text) {
  std::string quoted;
  for (const char character : text) quoted += character == '\'' ? "'\\''" : std::string(1, character);
  return "'" + quoted + "'";
}

std::string QuotedWords(const std::vector<std::string>& words) {
  return JoinedWords(words, " ", Quoted);
}

std::vector<std::string> ObjectsOf(const std::vector<std::string>& names) {
  std::vector<std::string> objects;
  std::remove_copy_if(names.begin(), names.end(), std::back_inserter(objects), IsMember);
  return objects;
}

std::vector<std::string> MembersOf(const std::vector<std::string>& names) {
  std::vector<std::string> members;
  std::copy_if(names.begin(), names.end(), std::back_inserter(members), IsMember);
  return members;
}

}  // namespace qv::cli
