#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"

namespace qv {

IRecordListPtr CreateRecordList() {
  void* raw = nullptr;
  const HRESULT created = CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IUnknown::kIid, &raw);
  if (Failed(created)) _com_raise_error(created);
  const IUnknownPtr object(static_cast<IUnknown*>(raw), false);
  const HRESULT started = OleRun(object.get());
  if (Failed(started)) _com_raise_error(started);
  return IRecordListPtr(static_cast<IRecordList*>(QueryFor(object.get(), IRecordList::kIid)), false);
}

}  // namespace qv
