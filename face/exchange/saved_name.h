// The name that a server gives to a downloaded file. Texts are UTF-8.
#pragma once

#include <optional>
#include <string>

namespace scriptwells {

enum class NameFault {
  kNone,
  kUnsafe,  // holds a control or format character (unsafe_characters.h)
  kHidden,  // begins with ".", like the files that shells and other programs read when they start
};

// Why no file is saved as `name`. Only for names that stay in the directory. `savesHidden` allows kHidden.
NameFault FaultOfName(const std::string& name, bool savesHidden);

// "it holds a control character": the reason as text; empty for kNone.
const char* ReasonOf(NameFault fault);

// The file's name in the value of a Content-Disposition header, as the library below reads it: the text after
// the last
// "=". Nothing if there is no "=", or if the header begins with one. Of two adjacent ones only the first
// counts, so "filename==a" names "=a".
std::optional<std::string> FileNameIn(const std::string& header);

// Whether the name would leave the chosen directory. The library below rejects it.
bool LeavesDirectory(const std::string& name);

}  // namespace scriptwells
