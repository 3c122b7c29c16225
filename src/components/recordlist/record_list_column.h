// One column of a record list. It is part of the list's columns and shares the list's reference count:
// returning it allocates nothing and keeps the list alive.
#pragma once

#include "com/counted_object.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class RecordListColumns;

class RecordListColumn final : public ComObject<IRecordListHeader, SupportsErrorInfo<IRecordListHeader>> {
 public:
  RecordListColumn(RecordListColumns& columns, const WideString& name, std::int32_t columnType) noexcept
      : columns_(columns), name_(name), type_(columnType) {}

  std::uint32_t AddRef() noexcept override;
  std::uint32_t Release() noexcept override;

  HRESULT GetDisplayName(WideString* name) noexcept override;
  HRESULT SetDisplayName(const WideString& name) noexcept override;
  HRESULT GetName(WideString* name) noexcept override;
  HRESULT GetType(std::int32_t* columnType) noexcept override;

 private:
  RecordListColumns& columns_;
  const WideString name_;
  WideString displayName_;
  const std::int32_t type_;
};

}  // namespace qv
