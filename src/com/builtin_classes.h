// The classes that are there without anybody registering them. Both functions are defined beside the classes,
// so that the platform room knows none of them.
#pragma once

#include "qvscriptwells/class_registry.h"

namespace qv {

struct BuiltinClass {
  Guid classId;
  ClassCreator creator;
};

// A table that ends with a row without creator.
const BuiltinClass* BuiltinClasses() noexcept;

// The class object of a class that this program or library carries itself; CLASS_E_CLASSNOTAVAILABLE, and
// null in *object, for one that it does not. `object` is not null.
HRESULT OwnClassObject(const Guid& classId, const Guid& iid, void** object) noexcept;

}  // namespace qv
