// The shared libraries with classes. A library is loaded when one of its classes is first used, and unloaded
// when it reports that it can be. Any thread. Loading and unloading hold a recursive lock, since the start of
// a library may need other classes.
#pragma once

#include "qvscriptwells/class_registry.h"

namespace qv {

// As CoGetClassObject, for the library that the registry names.
HRESULT LibraryClassObject(const Guid& classId, const Guid& iid, void** object) noexcept;

void UnloadUnusedLibraries() noexcept;

}  // namespace qv
