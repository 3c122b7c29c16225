// The initial options of sessions on threads that set none: the values below the product's registry key, for
// hosts that cannot call the functions of the static library.
#pragma once

#include <vector>

#include "qvscriptwells/http_component.h"
#include "qvscriptwells/registry.h"

namespace qv {

// The built-in options, overridden by the values of `layers`. The first layer that has a key is used; an
// invalid number changes nothing. Any thread.
HttpOptions OptionsFromRegistry(const std::vector<RegistryLayer>& layers);

}  // namespace qv
