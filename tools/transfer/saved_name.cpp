#include "tools/transfer/saved_name.h"

#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

struct ReasonRow {
  NameFault fault;
  const char* reason;
};

constexpr ReasonRow kReasons[] = {
    {NameFault::kUnsafe, "it holds a control character"},
    {NameFault::kHidden, "it begins with '.' (--force saves it)"},
};

}  // namespace

NameFault FaultOfName(const std::string& name, bool savesHidden) {
  if (HoldsUnsafeCharacters(name)) return NameFault::kUnsafe;
  return !savesHidden && name[0] == '.' ? NameFault::kHidden : NameFault::kNone;
}

const char* ReasonOf(NameFault fault) {
  for (const ReasonRow& row : kReasons)
    if (row.fault == fault) return row.reason;
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

}  // namespace qv::cli
