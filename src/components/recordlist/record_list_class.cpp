#include "components/recordlist/record_list_class.h"

#include "components/recordlist/record_list_object.h"

namespace qv {

HRESULT CreateRecordListComponent(const Guid& iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  try {
    const RecordListObjectPtr list(new RecordListObject);
    return list->QueryInterface(iid, object);
  } catch (...) {
    return E_OUTOFMEMORY;  // the only failure of creating an empty list
  }
}

}  // namespace qv
