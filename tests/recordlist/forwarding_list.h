// A host's own record list: it does nothing but forward its calls to a list of the built-in class, which the
// library must not find out.
#pragma once

#include "components/recordlist/record_list_object.h"
#include "fixtures/fake_object.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/record_list.h"

namespace qv {

class ForwardingList final : public FakeObject<IRecordList> {
 public:
  explicit ForwardingList(IRecordListPtr list) : list_(std::move(list)) {}

  HRESULT NewRecord(IUnknown** record) noexcept override { return list_->NewRecord(record); }
  HRESULT GetHeaders(IRecordListHeaders** headers) noexcept override { return list_->GetHeaders(headers); }
  HRESULT OpenCursor(VARIANT_BOOL option, IRecordListCursor** cursor) noexcept override {
    return list_->OpenCursor(option, cursor);
  }
  HRESULT SetLocked(VARIANT_BOOL locked) noexcept override { return list_->SetLocked(locked); }

  // A ClassCreator.
  static HRESULT Create(const Guid& iid, void** object) {
    void* raw = nullptr;
    const HRESULT code = CreateRecordListComponent(IRecordList::kIid, &raw);
    if (Failed(code)) return code;
    const IRecordListPtr list(static_cast<IRecordList*>(raw), false);
    return IRecordListPtr(new ForwardingList(list))->QueryInterface(iid, object);
  }

 private:
  IRecordListPtr list_;
};

// While one lives, lists are of this class.
class ForwardingClass {
 public:
  ForwardingClass() : before_(RegisterClassCreator(CLSID_RecordList, &ForwardingList::Create)) {}
  ForwardingClass(const ForwardingClass&) = delete;
  ForwardingClass& operator=(const ForwardingClass&) = delete;
  ~ForwardingClass() { RegisterClassCreator(CLSID_RecordList, before_); }

 private:
  ClassCreator before_;
};

}  // namespace qv
