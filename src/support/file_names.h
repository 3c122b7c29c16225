// File names from hosts. The rules are the same on every system.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"

namespace qv {

enum class FileSource : std::int16_t { kLocal = 0, kNetwork = 1, kUrl = 2 };

// EQvException, code 0: "DetectFileSource - File Name is missing" or "DetectFileSource - Invalid path or file
// name".
FileSource DetectFileSource(const WideString& fileName);
// Whether the above is kUrl. EQvException: "IsFileNameURL - File Name is missing."
bool IsFileNameURL(const WideString& fileName);
// A URL unchanged; any other name after "file:///", without conversion or escaping. Throws as above.
WideString FileNameToUrl(const WideString& fileName);

}  // namespace qv
