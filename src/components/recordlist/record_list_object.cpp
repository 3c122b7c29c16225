#include "components/recordlist/record_list_object.h"

#include "components/recordlist/list_refusal.h"
#include "components/recordlist/object_faces.h"
#include "components/recordlist/record_list_cursor.h"
#include "components/recordlist/record_list_record.h"
#include "qvscriptwells/error_info.h"

namespace qv {

HRESULT RecordListObject::QueryInterface(const Guid& iid, void** object) noexcept {
  return AnswerQueryFor({IRecordList::kIid, static_cast<IRecordList*>(this), this}, iid, object);
}

std::uint32_t RecordListObject::Release() noexcept {
  const std::uint32_t left = --references_;
  if (left == 0) End();
  return left;
}

// Objects in the cells may call back while they go. The reference held here keeps such a call from ending the
// list a second time; one that takes a reference for good keeps the list, which is empty then.
void RecordListObject::End() noexcept {
  references_ = 1;
  while (references_ == 1 && cells_.Rows() != 0) cells_.Clear();
  if (--references_ == 0) delete this;
}

HRESULT RecordListObject::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IRecordList::kIid ? S_OK : S_FALSE;
}

HRESULT RecordListObject::NewRecord(IUnknown** record) noexcept try {
  ClearErrorInfo();
  CheckPlace(record);
  *record = nullptr;
  CheckUnlocked();
  const IRecordListRecordPtr made(new RecordListRecord(*this, cells_.Rows()), false);
  cells_.AddRow();
  *record = made.get();
  made->AddRef();
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

HRESULT RecordListObject::GetHeaders(IRecordListHeaders** headers) noexcept try {
  ClearErrorInfo();
  CheckPlace(headers);
  *headers = &columns_;
  AddRef();
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

HRESULT RecordListObject::OpenCursor(VARIANT_BOOL, IRecordListCursor** cursor) noexcept try {
  ClearErrorInfo();
  CheckPlace(cursor);
  *cursor = nullptr;
  *cursor = new RecordListCursor(*this);
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

HRESULT RecordListObject::SetLocked(VARIANT_BOOL locked) noexcept {
  ClearErrorInfo();
  locked_ = locked != VARIANT_FALSE;
  return S_OK;
}

void RecordListObject::CheckUnlocked() const {
  if (locked_) ThrowLocked("The record list is locked.");
}

}  // namespace qv
