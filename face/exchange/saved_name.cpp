#include "face/exchange/saved_name.h"

#include "face/text/unsafe_characters.h"

namespace scriptwells {

NameFault FaultOfName(const std::string& name, bool savesHidden) {
  if (HoldsUnsafeCharacters(name)) return NameFault::kUnsafe;
  return !savesHidden && name[0] == '.' ? NameFault::kHidden : NameFault::kNone;
}

const char* ReasonOf(NameFault fault) {
  switch (fault) {
    case NameFault::kUnsafe:
      return "it holds a control character";
    case NameFault::kHidden:
      return "it begins with '.'";
    case NameFault::kNone:
      break;
  }
  return "";
}

std::optional<std::string> FileNameIn(const std::string& header) {
  std::size_t last = header.find('=');
  if (last == std::string::npos || last == 0) return std::nullopt;
  for (std::size_t next = last; next != std::string::npos; next = header.find('=', next + 2)) last = next;
  return header.substr(last + 1);
}

bool LeavesDirectory(const std::string& name) {
  return name.empty() || name == "." || name == ".." ||
         name.find_first_of(std::string("/\\\0", 3)) != std::string::npos;
}

}  // namespace scriptwells
