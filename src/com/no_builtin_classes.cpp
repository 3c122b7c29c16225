// For programs that link only src/com: all classes come from libraries.
#include "com/builtin_classes.h"

namespace qv {

const BuiltinClass* BuiltinClasses() noexcept {
  static constexpr BuiltinClass kNone = {Guid{}, nullptr};
  return &kNone;
}

HRESULT OwnClassObject(const Guid&, const Guid&, void**) noexcept {
  return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace qv
