// A registry file's text as lines, each told what it is: what reading and editing have in common. The form
// stands in qvscriptwells/registry.h. Beyond it are accepted: a byte order mark, CR LF, blanks around the
// parts of a line, one heading as first line, and values that the library does not read.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

enum class RegistryLineKind {
  kKept,     // blank, comment, heading, or a value that does not belong to a key's own text
  kSection,  // [HKEY_LOCAL_MACHINE\key]
  kText,     // @="text"
  kNoText,   // @= with a value of another kind
};

struct RegistryLine {
  std::size_t begin = 0;  // byte offsets in the file; `end` lies behind the line end
  std::size_t end = 0;    // and behind the lines that continue this one
  RegistryLineKind kind = RegistryLineKind::kKept;
  std::string_view key;  // of a kSection, without "HKEY_LOCAL_MACHINE\"; borrowed from the file's bytes
  std::string text;      // of a kText, UTF-8
};

// what() is such as "line 3: the quote is not closed".
class RegistryDamage : public std::runtime_error {
 public:
  RegistryDamage(std::size_t line, const char* reason)
      : std::runtime_error("line " + std::to_string(line) + ": " + reason) {}
};

// Throws RegistryDamage for the first line that is wrong. Any thread.
std::vector<RegistryLine> ReadRegistryLines(std::string_view bytes);

}  // namespace qv
