#include "components/recordlist/record_list_object.h"

#include <atomic>
#include <cstring>

#include "com/guarded.h"
#include "components/recordlist/list_refusal.h"
#include "components/recordlist/record_list_cursor.h"
#include "components/recordlist/record_list_record.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

// An interface begins with the address of its object's table of functions, and each class has its own.
const void* FunctionsOf(IRecordList* list) noexcept {
  const void* functions = nullptr;
  std::memcpy(&functions, static_cast<const void*>(list), sizeof functions);
  return functions;
}

std::atomic<const void*> functionsOfClass{nullptr};  // null until the first list is created

}  // namespace

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
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): GuardedBy catches
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
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): GuardedBy catches
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
    functionsOfClass.store(FunctionsOf(list.get()), std::memory_order_relaxed);
    return list->QueryInterface(iid, object);
  } catch (...) {
    return E_OUTOFMEMORY;  // the only failure of creating an empty list
  }
}

CellTable* CellsOf(IRecordList* list) noexcept {
  if (list == nullptr || FunctionsOf(list) != functionsOfClass.load(std::memory_order_relaxed))
    return nullptr;
  return &static_cast<RecordListObject*>(list)->Cells();
}

}  // namespace qv
