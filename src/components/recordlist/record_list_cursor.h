// A cursor: a place in a list. Rows never go while a cursor holds their list, so a number is enough.
#pragma once

#include "components/recordlist/record_list_object.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListCursor final : public IRecordListCursor, public ISupportErrorInfo {
 public:
  // Before the first row, with one reference.
  explicit RecordListCursor(RecordListObject& list) noexcept : list_(&list) {}
  RecordListCursor(const RecordListCursor&) = delete;
  RecordListCursor& operator=(const RecordListCursor&) = delete;

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override;

  HRESULT HasMore(VARIANT_BOOL* more) noexcept override;
  HRESULT Next(IUnknown** record) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  ~RecordListCursor() = default;
  bool IsAtEnd() const noexcept { return next_ == list_->Cells().Rows(); }

  std::uint32_t references_ = 1;
  const RecordListObjectPtr list_;
  std::size_t next_ = 0;
};

}  // namespace qv
