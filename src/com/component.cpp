#include "com/component.h"

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_error.h"

namespace qv {

IUnknownPtr CreateComponent(const Guid& classId) {
  void* raw = nullptr;
  const HRESULT created = CoCreateInstance(classId, nullptr, CLSCTX_ALL, IUnknown::kIid, &raw);
  if (Failed(created)) _com_raise_error(created);
  IUnknownPtr object(static_cast<IUnknown*>(raw), false);
  const HRESULT started = OleRun(object.get());
  if (Failed(started)) _com_raise_error(started);
  return object;
}

}  // namespace qv
