#include "automation/dispatch_faces.h"

#include "automation/dispatch_tables.h"

namespace qv {

HRESULT QvScriptwellsDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count,
                                             LCID, DISPID* ids) noexcept {
  return FindIds(kQvScriptwellsTable, names, count, ids);
}
HRESULT QvScriptwellsDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                      const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                      std::uint32_t* argumentError) noexcept {
  return InvokeMember(kQvScriptwellsTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT QvClientServiceRawDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names,
                                                  std::uint32_t count, LCID, DISPID* ids) noexcept {
  return FindIds(kQvClientServiceRawTable, names, count, ids);
}
HRESULT QvClientServiceRawDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                           const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                           std::uint32_t* argumentError) noexcept {
  return InvokeMember(kQvClientServiceRawTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT ConnectionModelDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count,
                                               LCID, DISPID* ids) noexcept {
  return FindIds(kConnectionModelTable, names, count, ids);
}
HRESULT ConnectionModelDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                        const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                        std::uint32_t* argumentError) noexcept {
  return InvokeMember(kConnectionModelTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT ConnectionStringDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names,
                                                std::uint32_t count, LCID, DISPID* ids) noexcept {
  return FindIds(kConnectionStringTable, names, count, ids);
}
HRESULT ConnectionStringDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                         const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                         std::uint32_t* argumentError) noexcept {
  return InvokeMember(kConnectionStringTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT ConnectionStringRawDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names,
                                                   std::uint32_t count, LCID, DISPID* ids) noexcept {
  return FindIds(kConnectionStringRawTable, names, count, ids);
}
HRESULT ConnectionStringRawDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                            const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                            std::uint32_t* argumentError) noexcept {
  return InvokeMember(kConnectionStringRawTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT DurationDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count, LCID,
                                        DISPID* ids) noexcept {
  return FindIds(kDurationTable, names, count, ids);
}
HRESULT DurationDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                 const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                 std::uint32_t* argumentError) noexcept {
  return InvokeMember(kDurationTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT UrlDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count, LCID,
                                   DISPID* ids) noexcept {
  return FindIds(kUrlTable, names, count, ids);
}
HRESULT UrlDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags, const DISPPARAMS* arguments,
                            Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept {
  return InvokeMember(kUrlTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT AttachedFileDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count,
                                            LCID, DISPID* ids) noexcept {
  return FindIds(kAttachedFileTable, names, count, ids);
}
HRESULT AttachedFileDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                     const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                     std::uint32_t* argumentError) noexcept {
  return InvokeMember(kAttachedFileTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT ParameterDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count, LCID,
                                         DISPID* ids) noexcept {
  return FindIds(kParameterTable, names, count, ids);
}
HRESULT ParameterDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                  const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                  std::uint32_t* argumentError) noexcept {
  return InvokeMember(kParameterTable, this, id, flags, arguments, result, failure, argumentError);
}

HRESULT ParametersDispatch::GetIDsOfNames(const Guid&, const char16_t* const* names, std::uint32_t count,
                                          LCID, DISPID* ids) noexcept {
  return FindIds(kParametersTable, names, count, ids);
}
HRESULT ParametersDispatch::Invoke(DISPID id, const Guid&, LCID, std::uint16_t flags,
                                   const DISPPARAMS* arguments, Variant* result, EXCEPINFO* failure,
                                   std::uint32_t* argumentError) noexcept {
  return InvokeMember(kParametersTable, this, id, flags, arguments, result, failure, argumentError);
}

}  // namespace qv
