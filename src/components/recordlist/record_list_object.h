// The record list of the built-in class: columns, records and cursors are views of it and keep it alive.
#pragma once

#include "com/counted_object.h"
#include "com/module.h"
#include "components/recordlist/cell_table.h"
#include "components/recordlist/record_list_columns.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListObject final : public CountedObject<IRecordList, SupportsErrorInfo<IRecordList>> {
 public:
  RecordListObject() : columns_(*this) {}

  HRESULT NewRecord(IUnknown** record) noexcept override;
  HRESULT GetHeaders(IRecordListHeaders** headers) noexcept override;
  HRESULT OpenCursor(VARIANT_BOOL option, IRecordListCursor** cursor) noexcept override;
  HRESULT SetLocked(VARIANT_BOOL locked) noexcept override;

  // For the parts. Throws ListRefusal when the list is locked.
  void CheckUnlocked() const;
  CellTable& Cells() noexcept { return cells_; }
  RecordListColumns& Columns() noexcept { return columns_; }

 private:
  void OnLastRelease() noexcept override;

  ModuleLock lock_;  // a host may keep a table longer than all other objects
  RecordListColumns columns_;
  CellTable cells_;
  bool locked_ = false;
};

using RecordListObjectPtr = boost::intrusive_ptr<RecordListObject>;

// The ClassCreator (class_registry.h) of CLSID_RecordList: creates an empty list and returns its `iid`.
HRESULT CreateRecordListComponent(const Guid& iid, void** object);

// For the reader and the writer of tables: the cells of a list of this class, past its locks. They live as
// long as the list. Null for null and for a list of another class. Calls nothing, so a host's own list does
// not notice it.
CellTable* CellsOf(IRecordList* list) noexcept;

}  // namespace qv
