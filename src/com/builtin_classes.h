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

// The class object of a class that is linked into this program or library; CLASS_E_CLASSNOTAVAILABLE, and
// null in *object, for any other. `object` is not null.
HRESULT OwnClassObject(const Guid& classId, const Guid& iid, void** object) noexcept;

}  // namespace qv
