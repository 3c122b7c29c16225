// An interface that implements the four operations of IDispatch with its table.
#pragma once

#include "dispatch/dispatch_table.h"

namespace qv {

// A separate base class for each interface: an object with two such interfaces has two tables.
template <class Interface, const DispatchTable& kTable>
class DispatchFace : public Interface {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count, LCID,
                        DISPID* ids) noexcept override {
    return FindIds(kTable, names, count, ids);
  }
  HRESULT Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override {
    return InvokeMember(kTable, this, id, flags, arguments, result, failure, argumentError);
  }

 protected:
  ~DispatchFace() = default;
};

}  // namespace qv
