// SPDX-License-Identifier: Apache-2.0
// Helpers for C++ code that calls counted objects: failed result codes become exceptions, and returned
// pointers are typed and counted.
//
//   IConnectionModelPtr model;
//   ThrowIfFailed(client->ConnectionModel(Put(model)));
//   if (const IRecordListPtr table = As<IRecordList>(answer.Object())) Show(table);
//
// Threads: those of the called object.
#pragma once

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/unknown.h"

namespace qv {

// Throws for a failed operation of `object` on interface `iid`. Takes the thread's error record if the object
// says (ISupportErrorInfo) that this interface leaves records; else the record stays.
[[noreturn]] void _com_issue_errorex(HRESULT code, IUnknown* object, const Guid& iid);

// Does nothing for success; otherwise throws `_com_error`, with this thread's error record if there is one.
// Failures found by Invoke or VariantChangeType themselves leave none. The usual way for a C++ host to call
// this library's objects, whose operations clear the record when they start:
//   ThrowIfFailed(model->CloseUserSession());
void ThrowIfFailed(HRESULT code);
// The same for objects of any origin; calls _com_issue_errorex.
inline void ThrowIfFailed(HRESULT code, IUnknown* object, const Guid& iid) {
  if (Failed(code)) _com_issue_errorex(code, object, iid);
}

// One reference to `iid` of the object, for the caller to release; null and throws as As does.
void* QueryReference(IUnknown* object, const Guid& iid);

// The object as another of its interfaces. Null for a null object or for one without the interface; any other
// failure throws `_com_error`. `iid` is for callers that know the interface by its id alone.
template <class Interface>
boost::intrusive_ptr<Interface> As(IUnknown* object, const Guid& iid = Interface::kIid) {
  return {static_cast<Interface*>(QueryReference(object, iid)), false};
}
template <class Interface, class Known>
boost::intrusive_ptr<Interface> As(const boost::intrusive_ptr<Known>& object,
                                   const Guid& iid = Interface::kIid) {
  return As<Interface>(object.get(), iid);
}

// Output parameter for an interface. When the statement ends, `pointer` holds what the operation returned
// (null if nothing), and what it held before is released.
template <class Interface>
class PutPointer {
 public:
  explicit PutPointer(boost::intrusive_ptr<Interface>& pointer) noexcept : pointer_(pointer) {}
  PutPointer(const PutPointer&) = delete;
  PutPointer& operator=(const PutPointer&) = delete;
  ~PutPointer() { pointer_ = {untyped_ == nullptr ? typed_ : static_cast<Interface*>(untyped_), false}; }

  operator Interface**() noexcept { return &typed_; }
  operator void**() noexcept { return &untyped_; }  // of QueryInterface and CoCreateInstance

 private:
  boost::intrusive_ptr<Interface>& pointer_;
  Interface* typed_ = nullptr;
  void* untyped_ = nullptr;
};

template <class Interface>
PutPointer<Interface> Put(boost::intrusive_ptr<Interface>& pointer) noexcept {
  return PutPointer<Interface>(pointer);
}

}  // namespace qv
