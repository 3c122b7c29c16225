// The classes that are there without anybody registering them. The table is defined beside the components, so
// that the registry knows none of them.
#pragma once

#include <vector>

#include "qvscriptwells/class_registry.h"

namespace qv {

struct BuiltinClass {
  Guid classId;
  ClassCreator creator;
};

std::vector<BuiltinClass> BuiltinClasses();

}  // namespace qv
