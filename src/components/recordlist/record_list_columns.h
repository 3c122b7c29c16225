// The columns of a record list. They are part of the list and share its reference count.
#pragma once

#include <deque>

#include "com/counted_object.h"
#include "components/recordlist/record_list_column.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListObject;

class RecordListColumns final : public ComObject<IRecordListHeaders, SupportsErrorInfo<IRecordListHeaders>> {
 public:
  explicit RecordListColumns(RecordListObject& list) : list_(list) {}

  std::uint32_t AddRef() noexcept override;
  std::uint32_t Release() noexcept override;

  HRESULT AddHeader(const WideString& name, std::int32_t columnType,
                    IRecordListHeader** header) noexcept override;
  HRESULT GetHeader(std::int32_t index, IRecordListHeader** header) noexcept override;
  HRESULT GetCount(std::int32_t* count) noexcept override;
  HRESULT SetLocked(VARIANT_BOOL locked) noexcept override;

  // Throws ListRefusal when the list or its columns are locked.
  void CheckUnlocked() const;
  // The index as a position; throws ListRefusal when no column has it.
  std::size_t Position(std::int32_t index) const;

 private:
  RecordListColumn& Append(const WideString& name, std::int32_t columnType);

  RecordListObject& list_;
  std::deque<RecordListColumn> columns_;  // addresses stay valid when columns are added
  bool locked_ = false;
};

}  // namespace qv
