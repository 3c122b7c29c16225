// Class objects, as COM publishes IClassFactory: what a library hands out for each class that it can create.
#pragma once

#include "qvscriptwells/unknown.h"

namespace qv {

class IClassFactory : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("00000001-0000-0000-c000-000000000046");
  // Makes an object and hands out `iid` of it. With `outer` the object becomes a part of that one: its
  // interfaces count and answer through `outer`, which asks for IUnknown and nothing else here
  // (CLASS_E_NOAGGREGATION) and owns what it gets. E_POINTER for a null `object`, which is null on failure.
  virtual HRESULT CreateInstance(IUnknown* outer, const Guid& iid, void** object) noexcept = 0;
  // Keeps the library loaded (true) or lets it go again; calls are counted.
  virtual HRESULT LockServer(bool lock) noexcept = 0;

 protected:
  ~IClassFactory() = default;
};

using IClassFactoryPtr = boost::intrusive_ptr<IClassFactory>;

}  // namespace qv
