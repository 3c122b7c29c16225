#include "components/recordlist/record_list_columns.h"

#include "com/guarded.h"
#include "components/recordlist/list_refusal.h"
#include "components/recordlist/record_list_object.h"
#include "qvscriptwells/error_info.h"

namespace qv {

std::uint32_t RecordListColumns::AddRef() noexcept {
  return list_.AddRef();
}

std::uint32_t RecordListColumns::Release() noexcept {
  return list_.Release();
}

HRESULT RecordListColumns::AddHeader(const WideString& name, std::int32_t columnType,
                                     IRecordListHeader** header) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    if (header != nullptr) *header = nullptr;
    CheckUnlocked();
    RecordListColumn& added = Append(name, columnType);
    if (header == nullptr) return;
    *header = &added;
    AddRef();
  });
}

RecordListColumn& RecordListColumns::Append(const WideString& name, std::int32_t columnType) {
  RecordListColumn& added = columns_.emplace_back(*this, name, columnType);
  try {
    list_.Cells().AddColumn();
  } catch (...) {
    columns_.pop_back();
    throw;
  }
  return added;
}

HRESULT RecordListColumns::GetHeader(std::int32_t index, IRecordListHeader** header) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(header);
    *header = nullptr;
    *header = &columns_[Position(index)];
    AddRef();
  });
}

HRESULT RecordListColumns::GetCount(std::int32_t* count) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(count);
    *count = static_cast<std::int32_t>(columns_.size());
  });
}

// Works on a locked list too, since the list is locked before its columns.
HRESULT RecordListColumns::SetLocked(VARIANT_BOOL locked) noexcept {
  ClearErrorInfo();
  locked_ = locked != VARIANT_FALSE;
  return S_OK;
}

void RecordListColumns::CheckUnlocked() const {
  list_.CheckUnlocked();
  if (locked_) ThrowLocked("The columns are locked.");
}

std::size_t RecordListColumns::Position(std::int32_t index) const {
  const std::size_t position = static_cast<std::size_t>(index);  // huge for a negative one
  if (position >= columns_.size()) ThrowNoColumn(index, columns_.size());
  return position;
}

}  // namespace qv
