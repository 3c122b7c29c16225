// The record list of the built-in class: what its columns, records and cursors show parts of. They all keep
// it alive.
#pragma once

#include "com/module.h"
#include "components/recordlist/cell_table.h"
#include "components/recordlist/record_list_columns.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListObject final : public IRecordList, public ISupportErrorInfo {
 public:
  RecordListObject() : columns_(*this) {}
  RecordListObject(const RecordListObject&) = delete;
  RecordListObject& operator=(const RecordListObject&) = delete;

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override;

  HRESULT NewRecord(IUnknown** record) noexcept override;
  HRESULT GetHeaders(IRecordListHeaders** headers) noexcept override;
  HRESULT OpenCursor(VARIANT_BOOL option, IRecordListCursor** cursor) noexcept override;
  HRESULT SetLocked(VARIANT_BOOL locked) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

  // For the parts. Throws ListRefusal when the list is locked.
  void CheckUnlocked() const;
  CellTable& Cells() noexcept { return cells_; }
  RecordListColumns& Columns() noexcept { return columns_; }

 private:
  ~RecordListObject() = default;
  void End() noexcept;

  ModuleLock lock_;  // a host may hold a table beyond all else
  std::uint32_t references_ = 1;
  RecordListColumns columns_;
  CellTable cells_;
  bool locked_ = false;
};

using RecordListObjectPtr = boost::intrusive_ptr<RecordListObject>;

// The count is reached through one of the bases; they lead to the same.
inline void intrusive_ptr_add_ref(RecordListObject* list) noexcept {
  list->AddRef();
}
inline void intrusive_ptr_release(RecordListObject* list) noexcept {
  list->Release();
}

}  // namespace qv
