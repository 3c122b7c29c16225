// The shared libraries that carry classes: loaded when a class of theirs is wanted, kept, unloaded when they
// say that they can. Any thread. Loading and unloading hold one guard, which the same thread may enter again,
// since a library's own start may want classes.
#pragma once

#include "qvscriptwells/class_registry.h"

namespace qv {

// As CoGetClassObject, for the library that the registry names.
HRESULT LibraryClassObject(const Guid& classId, const Guid& iid, void** object) noexcept;

void UnloadUnusedLibraries() noexcept;

}  // namespace qv
