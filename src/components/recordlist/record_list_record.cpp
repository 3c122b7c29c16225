#include "components/recordlist/record_list_record.h"

#include <utility>

#include "com/guarded.h"
#include "components/recordlist/list_refusal.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

// A pointer to the caller's variable may dangle when the table is read later.
Variant CopyToStore(const Variant& value) {
  if ((value.Tag() & VT_BYREF) != 0) ThrowBadTag(value.Tag());
  try {
    return value;
  } catch (const _com_error&) {
    ThrowBadTag(value.Tag());
  }
}

}  // namespace

// The old content of *value is released last: releasing an object may call back and change the table.
HRESULT RecordListRecord::GetValue(std::int32_t index, Variant* value) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(value);
    Variant copy = Cell(index);
    const Variant old = std::exchange(*value, std::move(copy));
  });
}

// Copying an object may call back too, so the locks are tested and the cell is looked up after the copy. The
// old value is released last, as above; that may destroy this record.
HRESULT RecordListRecord::SetValue(std::int32_t index, const Variant& value) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    const IRecordListRecordPtr keepAlive(this);
    CheckUnlocked();
    list_->Columns().Position(index);  // a missing column is reported before a bad value
    Variant fresh = CopyToStore(value);
    CheckUnlocked();
    const Variant old = std::exchange(Cell(index), std::move(fresh));
  });
}

HRESULT RecordListRecord::GetHeaders(IRecordListHeaders** headers) noexcept {
  return list_->GetHeaders(headers);
}

// Works on a locked list too: a record is locked and unlocked in any order with its list.
HRESULT RecordListRecord::SetLocked(VARIANT_BOOL locked) noexcept {
  ClearErrorInfo();
  list_->Cells().Lock(row_, locked != VARIANT_FALSE);
  return S_OK;
}

Variant& RecordListRecord::Cell(std::int32_t index) const {
  return list_->Cells().Cell(row_, list_->Columns().Position(index));
}

void RecordListRecord::CheckUnlocked() const {
  list_->CheckUnlocked();
  if (list_->Cells().IsLocked(row_)) ThrowLocked("The record is locked.");
}

}  // namespace qv
