#include "platform/builtin_classes.h"

#include "components/http/http_component_class.h"
#include "qvscriptwells/http_component.h"

namespace qv {

std::vector<BuiltinClass> BuiltinClasses() {
  return {{CLSID_HttpComponent, &CreateHttpComponent}};
}

}  // namespace qv
