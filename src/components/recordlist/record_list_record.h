// A record: one row of a list, whose values and lock stay in the list. Made anew each time that it is asked
// for, so that a row that nobody looks at costs no object.
#pragma once

#include "components/recordlist/record_list_object.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListRecord final : public IRecordListRecord, public ISupportErrorInfo {
 public:
  // With one reference. The row is there before the first call.
  RecordListRecord(RecordListObject& list, std::size_t row) noexcept : list_(&list), row_(row) {}
  RecordListRecord(const RecordListRecord&) = delete;
  RecordListRecord& operator=(const RecordListRecord&) = delete;

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override;

  HRESULT GetValue(std::int32_t index, Variant* value) noexcept override;
  HRESULT SetValue(std::int32_t index, const Variant& value) noexcept override;
  HRESULT GetHeaders(IRecordListHeaders** headers) noexcept override;
  HRESULT SetLocked(VARIANT_BOOL locked) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  ~RecordListRecord() = default;
  Variant& Cell(std::int32_t index) const;
  void CheckUnlocked() const;

  std::uint32_t references_ = 1;
  const RecordListObjectPtr list_;
  const std::size_t row_;
};

}  // namespace qv
