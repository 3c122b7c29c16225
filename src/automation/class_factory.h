// The class object of one class. It exists as long as the library is loaded. A reference to it keeps the
// library loaded, as a lock does. Any thread.
#pragma once

#include <atomic>

#include "com/counted_object.h"
#include "qvscriptwells/class_factory.h"

namespace qv {

// Creates an object of the class, as IClassFactory::CreateInstance does.
using ObjectCreator = HRESULT (*)(IUnknown* outer, const Guid& iid, void** object) noexcept;

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  explicit ClassFactory(ObjectCreator creator) noexcept : creator_(creator) {}

  std::uint32_t AddRef() noexcept override;
  std::uint32_t Release() noexcept override;
  HRESULT CreateInstance(IUnknown* outer, const Guid& iid, void** object) noexcept override;
  HRESULT LockServer(bool lock) noexcept override;

 private:
  ObjectCreator creator_;
  std::atomic<std::uint32_t> count_{0};
};

}  // namespace qv
