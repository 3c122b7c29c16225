// Names of files as hosts pass them: the rules are about the names and not about the system that runs the
// code.
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
// A URL as it is; any other name behind "file:///". Nothing is turned or escaped. Raises as the above.
WideString FileNameToUrl(const WideString& fileName);

}  // namespace qv
