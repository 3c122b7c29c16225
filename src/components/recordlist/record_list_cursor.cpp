#include "components/recordlist/record_list_cursor.h"

#include "com/guarded.h"
#include "components/recordlist/list_refusal.h"
#include "components/recordlist/record_list_record.h"

namespace qv {

HRESULT RecordListCursor::HasMore(VARIANT_BOOL* more) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(more);
    *more = IsAtEnd() ? VARIANT_FALSE : VARIANT_TRUE;
  });
}

HRESULT RecordListCursor::Next(IUnknown** record) noexcept {
  return GuardedBy(ReportListFailure, [&] {
    CheckPlace(record);
    *record = nullptr;
    if (IsAtEnd()) ThrowNoMoreRecords();
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): the guard handles it
    *record = IRecordListRecordPtr(new RecordListRecord(*list_, next_)).detach();
    ++next_;
  });
}

}  // namespace qv
