// Registry files as the tests write them, short: "[M\\a]|@='x'|" is
//
//   [HKEY_LOCAL_MACHINE\a]
//   @="x"
#pragma once

#include <string>

namespace qv {

// "|" is a line's end, "'" a quote, and "[M" the root of the machine.
inline std::string File(const std::string& notation) {
  std::string bytes;
  for (const char sign : notation) {
    if (sign == '|')
      bytes += '\n';
    else if (sign == '\'')
      bytes += '"';
    else if (sign == 'M' && !bytes.empty() && bytes.back() == '[')
      bytes += "HKEY_LOCAL_MACHINE";
    else
      bytes += sign;
  }
  return bytes;
}

}  // namespace qv
