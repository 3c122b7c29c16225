// SPDX-License-Identifier: Apache-2.0
// Reference-counted interfaces. Every object of the library, of its components and of the host is used
// through an interface that derives from IUnknown.
//
// Ownership: an interface pointer that an operation returns carries one reference, which the receiver
// releases. A pointer argument is borrowed for the call. Hold references in the `...Ptr` types of these
// headers: `IParametersPtr p(raw)` adds a reference, `IParametersPtr p(raw, false)` takes over the one of
// `raw`. Threads: an object is used on one thread at a time; counts are plain integers.
#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstdint>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

class IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("00000000-0000-0000-c000-000000000046");

  // S_OK and one new reference in *object, or E_NOINTERFACE and null there. E_POINTER for a null `object`.
  virtual HRESULT QueryInterface(const Guid& iid, void** object) noexcept = 0;
  // Both return the new count; only tests should use it.
  virtual std::uint32_t AddRef() noexcept = 0;
  virtual std::uint32_t Release() noexcept = 0;

 protected:
  ~IUnknown() = default;
};

// The functions that boost::intrusive_ptr calls, for every interface.
inline void intrusive_ptr_add_ref(IUnknown* object) noexcept {
  object->AddRef();
}
inline void intrusive_ptr_release(IUnknown* object) noexcept {
  object->Release();
}

using IUnknownPtr = boost::intrusive_ptr<IUnknown>;

// Says which interfaces of an object leave an error record when an operation fails.
class ISupportErrorInfo : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("df0b3d60-548f-101b-8e65-08002b2bd119");
  // S_OK: the interface leaves records (error_info.h); S_FALSE: it does not.
  virtual HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept = 0;

 protected:
  ~ISupportErrorInfo() = default;
};

using ISupportErrorInfoPtr = boost::intrusive_ptr<ISupportErrorInfo>;

// An object that must be started after creation (OleRun in class_registry.h).
class IRunnableObject : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("00000126-0000-0000-c000-000000000046");
  virtual HRESULT Run() noexcept = 0;

 protected:
  ~IRunnableObject() = default;
};

using IRunnableObjectPtr = boost::intrusive_ptr<IRunnableObject>;

}  // namespace qv
