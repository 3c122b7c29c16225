// What the tests and their class libraries agree on.
#pragma once

#include "qvscriptwells/guid.h"

namespace qv {

constexpr Guid kClassOfLibrary = ParseGuid("5b7f0c1e-3d52-4e8a-9c61-2f0a8d4b6e11");
constexpr char16_t kKeyOfLibrary[] =
    u"SOFTWARE\\Classes\\CLSID\\{5B7F0C1E-3D52-4E8A-9C61-2F0A8D4B6E11}\\InprocServer32";
// Tests may register it for a library.
constexpr Guid kMissingClass = ParseGuid("5b7f0c1e-3d52-4e8a-9c61-2f0a8d4b6e12");
constexpr char16_t kMissingKey[] =
    u"SOFTWARE\\Classes\\CLSID\\{5B7F0C1E-3D52-4E8A-9C61-2F0A8D4B6E12}\\InprocServer32";

}  // namespace qv
