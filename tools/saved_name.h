// The name that a server gives to a file that is downloaded. Texts are UTF-8.
#pragma once

#include <optional>
#include <string>

namespace qv::cli {

enum class NameFault {
  kNone,
  kUnsafe,  // holds characters that would drive a terminal, or hide on it (unsafe_characters.h)
  kHidden,  // begins with ".", as the files do that shells and other programs read when they start
};

// Why this program does not save a file under `name`, which stays in the directory; kHidden only unless
// `savesHidden`.
NameFault FaultOfName(const std::string& name, bool savesHidden);

// "it holds a control character": the reason in words; empty for kNone.
const char* ReasonOf(NameFault fault);

// The file's name in the value of a Content-Disposition header, as the library reads it: what follows the
// last
// "=". None when there is no "=", or when the header begins with one. Of two that stand side by side only the
// first counts, so "filename==a" names "=a".
std::optional<std::string> FileNameIn(const std::string& header);

// Whether a file of that name would not lie in the directory that was chosen. The library refuses it.
bool LeavesDirectory(const std::string& name);

}  // namespace qv::cli
