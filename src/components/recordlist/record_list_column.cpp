#include "components/recordlist/record_list_column.h"

#include "components/recordlist/list_refusal.h"
#include "components/recordlist/object_faces.h"
#include "components/recordlist/record_list_columns.h"
#include "qvscriptwells/error_info.h"

namespace qv {

HRESULT RecordListColumn::QueryInterface(const Guid& iid, void** object) noexcept {
  return AnswerQueryFor({IRecordListHeader::kIid, static_cast<IRecordListHeader*>(this), this}, iid, object);
}

std::uint32_t RecordListColumn::AddRef() noexcept {
  return columns_.AddRef();
}

std::uint32_t RecordListColumn::Release() noexcept {
  return columns_.Release();
}

HRESULT RecordListColumn::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IRecordListHeader::kIid ? S_OK : S_FALSE;
}

HRESULT RecordListColumn::GetDisplayName(WideString* name) noexcept try {
  ClearErrorInfo();
  CheckPlace(name);
  *name = displayName_;
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

HRESULT RecordListColumn::SetDisplayName(const WideString& name) noexcept try {
  ClearErrorInfo();
  columns_.CheckUnlocked();
  displayName_ = name;
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

HRESULT RecordListColumn::GetName(WideString* name) noexcept try {
  ClearErrorInfo();
  CheckPlace(name);
  *name = name_;
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

HRESULT RecordListColumn::GetType(std::int32_t* columnType) noexcept try {
  ClearErrorInfo();
  CheckPlace(columnType);
  *columnType = type_;
  return S_OK;
} catch (...) {
  return ReportListFailure();
}

}  // namespace qv
