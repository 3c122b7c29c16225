#include "components/recordlist/record_list_cursor.h"

#include "components/recordlist/list_refusal.h"
#include "components/recordlist/object_faces.h"
#include "components/recordlist/record_list_record.h"
#include "qvscriptwells/error_info.h"

namespace qv {

HRESULT RecordListCursor::QueryInterface(const Guid& iid, void** object) noexcept {
  return AnswerQueryFor({IRecordListCursor::kIid, static_cast<IRecordListCursor*>(this), this}, iid, object);
}

std::uint32_t RecordListCursor::Release() noexcept {
  const std::uint32_t left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT RecordListCursor::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IRecordListCursor::kIid ? S_OK : S_FALSE;
}

HRESULT RecordListCursor::HasMore(VARIANT_BOOL* more) noexcept try {
  ClearErrorInfo();
  CheckPlace(more);
  *more = IsAtEnd() ? VARIANT_FALSE : VARIANT_TRUE;
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

HRESULT RecordListCursor::Next(IUnknown** record) noexcept try {
  ClearErrorInfo();
  CheckPlace(record);
  *record = nullptr;
  if (IsAtEnd()) ThrowNoMoreRecords();
  *record = static_cast<IRecordListRecord*>(new RecordListRecord(*list_, next_));
  ++next_;
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

}  // namespace qv
