// A registry file's text as lines, each told what it is: what reading and editing have in common. The form
// stands in qvscriptwells/registry.h. Beyond it are accepted: a byte order mark, CR LF, blanks around the
// parts of a line, one heading as first line, and values that are no texts.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

enum class RegistryLineKind {
  kKept,        // comment, heading, or a value of the root itself
  kBlank,       // nothing
  kSection,     // [HKEY_LOCAL_MACHINE\key]
  kText,        // @="text"
  kNoText,      // @= with a value of another kind
  kNamedText,   // "name"="text"
  kNamedOther,  // "name"= with a value of another kind, or with one that cannot be read
};

struct RegistryLine {
  std::size_t begin = 0;  // byte offsets in the file; `end` lies behind the line end
  std::size_t end = 0;    // and behind the lines that continue this one
  RegistryLineKind kind = RegistryLineKind::kKept;
  std::string key;   // of a kSection, below HKEY_LOCAL_MACHINE; UTF-8 as the next two
  std::string name;  // of a kNamedText or kNamedOther; empty when it cannot be read
  std::string text;  // of a kText or kNamedText
};

// What the sections of a file begin with.
inline constexpr std::string_view kLocalMachine = "HKEY_LOCAL_MACHINE";

// what() is such as "line 3: the quote is not closed".
class RegistryDamage : public std::runtime_error {
 public:
  RegistryDamage(std::size_t line, const char* reason)
      : std::runtime_error("line " + std::to_string(line) + ": " + reason) {}
};

// Throws RegistryDamage for the first line that is wrong. Any thread.
std::vector<RegistryLine> ReadRegistryLines(std::string_view bytes);

}  // namespace qv
