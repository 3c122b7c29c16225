// Each interface with its four operations of late binding served from its table. A class of its own for each,
// because an object with two such interfaces has two tables.
#pragma once

#include "automation/dispatch_table.h"
#include "qvscriptwells/objects.h"

namespace qv {

class QvScriptwellsDispatch : public IQvScriptwells {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~QvScriptwellsDispatch() = default;
};

class QvClientServiceRawDispatch : public IQvClientServiceRaw {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~QvClientServiceRawDispatch() = default;
};

class ConnectionModelDispatch : public IConnectionModel {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~ConnectionModelDispatch() = default;
};

class ConnectionStringDispatch : public IConnectionString {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~ConnectionStringDispatch() = default;
};

class ConnectionStringRawDispatch : public IConnectionStringRaw {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~ConnectionStringRawDispatch() = default;
};

class DurationDispatch : public IDuration {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~DurationDispatch() = default;
};

class UrlDispatch : public IUrl {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~UrlDispatch() = default;
};

class AttachedFileDispatch : public IAttachedFile {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~AttachedFileDispatch() = default;
};

class ParameterDispatch : public IParameter {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~ParameterDispatch() = default;
};

class ParametersDispatch : public IParameters {
 public:
  HRESULT GetTypeInfoCount(std::uint32_t* count) noexcept override { return CountTypeInfo(count); }
  HRESULT GetTypeInfo(std::uint32_t index, LCID, ITypeInfo** info) noexcept override {
    return FindTypeInfo(index, info);
  }
  HRESULT GetIDsOfNames(const Guid& iid, const char16_t* const* names, std::uint32_t count, LCID locale,
                        DISPID* ids) noexcept override;
  HRESULT Invoke(DISPID id, const Guid& iid, LCID locale, std::uint16_t flags, const DISPPARAMS* arguments,
                 Variant* result, EXCEPINFO* failure, std::uint32_t* argumentError) noexcept override;

 protected:
  ~ParametersDispatch() = default;
};

}  // namespace qv
