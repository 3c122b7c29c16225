#include "components/recordlist/record_list_column.h"

#include "com/guarded.h"
#include "components/recordlist/list_refusal.h"
#include "components/recordlist/record_list_columns.h"

namespace qv {

std::uint32_t RecordListColumn::AddRef() noexcept {
  return columns_.AddRef();
}

std::uint32_t RecordListColumn::Release() noexcept {
  return columns_.Release();
}

HRESULT RecordListColumn::GetDisplayName(WideString* name) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(name);
    *name = displayName_;
  });
}

HRESULT RecordListColumn::SetDisplayName(const WideString& name) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    columns_.CheckUnlocked();
    displayName_ = name;
  });
}

HRESULT RecordListColumn::GetName(WideString* name) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(name);
    *name = name_;
  });
}

HRESULT RecordListColumn::GetType(std::int32_t* columnType) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(columnType);
    *columnType = type_;
  });
}

}  // namespace qv
