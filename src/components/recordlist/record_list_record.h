// A record: one row of a list, whose values and lock are stored in the list. Each request creates a new
// record, so that an unused row needs no object.
#pragma once

#include "com/counted_object.h"
#include "components/recordlist/record_list_object.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListRecord final : public CountedObject<IRecordListRecord, SupportsErrorInfo<IRecordListRecord>> {
 public:
  // The row must exist.
  RecordListRecord(RecordListObject& list, std::size_t row) noexcept : list_(&list), row_(row) {}

  HRESULT GetValue(std::int32_t index, Variant* value) noexcept override;
  HRESULT SetValue(std::int32_t index, const Variant& value) noexcept override;
  HRESULT GetHeaders(IRecordListHeaders** headers) noexcept override;
  HRESULT SetLocked(VARIANT_BOOL locked) noexcept override;

 private:
  Variant& Cell(std::int32_t index) const;
  void CheckUnlocked() const;

  const RecordListObjectPtr list_;
  const std::size_t row_;
};

}  // namespace qv
