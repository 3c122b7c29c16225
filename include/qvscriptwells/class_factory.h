// SPDX-License-Identifier: Apache-2.0
// Class objects, with COM's published IClassFactory. A library returns one for each class that it can create.
#pragma once

#include "qvscriptwells/unknown.h"

namespace qv {

class IClassFactory : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("00000001-0000-0000-c000-000000000046");
  // Creates an object and returns its interface `iid`. With `outer` the object is aggregated: its interfaces
  // count references and answer queries through `outer`, which must ask for IUnknown here (else
  // CLASS_E_NOAGGREGATION) and owns the result. E_POINTER for a null `object`. *object is null on failure.
  virtual HRESULT CreateInstance(IUnknown* outer, const Guid& iid, void** object) noexcept = 0;
  // Keeps the library loaded (true) or releases it (false); calls are counted.
  virtual HRESULT LockServer(bool lock) noexcept = 0;

 protected:
  ~IClassFactory() = default;
};

using IClassFactoryPtr = boost::intrusive_ptr<IClassFactory>;

}  // namespace qv
