// A cursor: a position in a list. A row index is enough, since rows stay while a cursor holds the list.
#pragma once

#include "com/counted_object.h"
#include "components/recordlist/record_list_object.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListCursor final : public CountedObject<IRecordListCursor, SupportsErrorInfo<IRecordListCursor>> {
 public:
  // Before the first row.
  explicit RecordListCursor(RecordListObject& list) noexcept : list_(&list) {}

  HRESULT HasMore(VARIANT_BOOL* more) noexcept override;
  HRESULT Next(IUnknown** record) noexcept override;

 private:
  bool IsAtEnd() const noexcept { return next_ == list_->Cells().Rows(); }

  const RecordListObjectPtr list_;
  std::size_t next_ = 0;
};

}  // namespace qv
