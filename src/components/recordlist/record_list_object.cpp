#include "components/recordlist/record_list_object.h"

#include "com/guarded.h"
#include "components/recordlist/list_refusal.h"
#include "components/recordlist/record_list_cursor.h"
#include "components/recordlist/record_list_record.h"
#include "qvscriptwells/error_info.h"

namespace qv {

// Released objects in the cells may call back. The reference held here prevents such a call from destroying
// the list twice. A call that keeps a reference keeps the list, which is then empty.
void RecordListObject::OnLastRelease() noexcept {
  count_.Restart();
  while (count_.IsOne() && cells_.Rows() != 0) cells_.Clear();
  if (count_.Drop() == 0) delete this;
}

HRESULT RecordListObject::NewRecord(IUnknown** record) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(record);
    *record = nullptr;
    CheckUnlocked();
    IRecordListRecordPtr made(new RecordListRecord(*this, cells_.Rows()));
    cells_.AddRow();
    *record = made.detach();
  });
}

HRESULT RecordListObject::GetHeaders(IRecordListHeaders** headers) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(headers);
    *headers = &columns_;
    AddRef();
  });
}

HRESULT RecordListObject::OpenCursor(VARIANT_BOOL, IRecordListCursor** cursor) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(cursor);
    *cursor = nullptr;
    *cursor = IRecordListCursorPtr(new RecordListCursor(*this)).detach();
  });
}

HRESULT RecordListObject::SetLocked(VARIANT_BOOL locked) noexcept {
  ClearErrorInfo();
  locked_ = locked != VARIANT_FALSE;
  return S_OK;
}

void RecordListObject::CheckUnlocked() const {
  if (locked_) ThrowLocked("The record list is locked.");
}

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
