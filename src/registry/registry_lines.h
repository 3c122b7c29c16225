// Splits a registry file's text into lines and classifies each, for reading and editing. The format is
// described in qvscriptwells/registry.h. Also accepted: a byte order mark, CR LF, blanks around the parts of
// a line, one heading as first line, and values other than texts.
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
  std::size_t begin = 0;  // byte offsets in the file; `end` is after the line end
  std::size_t end = 0;    // and after the lines that continue this one
  RegistryLineKind kind = RegistryLineKind::kKept;
  std::string key;   // of a kSection, below HKEY_LOCAL_MACHINE; UTF-8, like the next two
  std::string name;  // of a kNamedText or kNamedOther; empty if it cannot be read
  std::string text;  // of a kText or kNamedText
};

// The start of each section name.
inline constexpr std::string_view kLocalMachine = "HKEY_LOCAL_MACHINE";

// what() is a text such as "line 3: the quote is not closed".
class RegistryDamage : public std::runtime_error {
 public:
  RegistryDamage(std::size_t line, const char* reason)
      : std::runtime_error("line " + std::to_string(line) + ": " + reason) {}
};

// Throws RegistryDamage for the first invalid line. Any thread.
std::vector<RegistryLine> ReadRegistryLines(std::string_view bytes);

}  // namespace qv
