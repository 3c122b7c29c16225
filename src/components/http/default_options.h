// What sessions start with on threads that set no options of their own: the values below the product's key of
// the registry, for hosts that cannot call the functions of the archive.
#pragma once

#include <vector>

#include "qvscriptwells/http_component.h"
#include "qvscriptwells/registry.h"

namespace qv {

// The built-in options with the values of `layers` in their places. The first layer that has a key decides; a
// number that is none changes nothing. Any thread.
HttpOptions OptionsFromRegistry(const std::vector<RegistryLayer>& layers);

}  // namespace qv
