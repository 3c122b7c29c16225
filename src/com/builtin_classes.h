// The classes that need no registration. Both functions are defined where the classes are, so that src/com
// does not depend on them.
#pragma once

#include "qvscriptwells/class_registry.h"

namespace qv {

struct BuiltinClass {
  Guid classId;
  ClassCreator creator;
};

// A table; a row without creator ends it.
const BuiltinClass* BuiltinClasses() noexcept;

// Returns `iid` of the class object of a class that is linked into this program or library. It is created on
// first use and kept. E_POINTER; CLASS_E_CLASSNOTAVAILABLE, and null, for any other class; E_NOINTERFACE.
HRESULT OwnClassObject(const Guid& classId, const Guid& iid, void** object) noexcept;

}  // namespace qv
