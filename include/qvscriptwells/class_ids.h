// SPDX-License-Identifier: Apache-2.0
// The classes of the objects that hosts hold. One can be created by its id or ProgID (class_registry.h):
// CLSID_QvScriptwells; the others come from it, or from create_objects.h, and their ids name the source of
// errors only.
#pragma once

#include "qvscriptwells/guid.h"

namespace qv {

constexpr Guid CLSID_QvScriptwells = ParseGuid("01932093-f909-400b-b02e-7aedaba33a36");
constexpr Guid CLSID_ConnectionModel = ParseGuid("2541dc31-df90-43bf-abef-76838f412e28");
constexpr Guid CLSID_Url = ParseGuid("f17b9f00-6e84-4f33-8601-07ebfc331928");
constexpr Guid CLSID_Duration = ParseGuid("7f769ec9-9f94-41b4-80a6-3940c023cc0c");
constexpr Guid CLSID_ConnectionString = ParseGuid("6dfd5e94-8f16-4e8d-9461-4bec0c64b6a0");
constexpr Guid CLSID_AttachedFile = ParseGuid("35a668e0-50bc-4de3-9e3b-d9b15a700e49");
constexpr Guid CLSID_Parameters = ParseGuid("0f896fe3-62b0-4650-bcd3-1aa51cb97304");
constexpr Guid CLSID_Parameter = ParseGuid("38f018c5-1b8f-4e6e-afc1-48f7e7441200");

// The names of CLSID_QvScriptwells in the registry.
constexpr char16_t kScriptwellsProgId[] = u"QvScriptwells.QvScriptwells.1.0";
constexpr char16_t kScriptwellsVersionIndependentProgId[] = u"QvScriptwells.QvScriptwells";

}  // namespace qv
