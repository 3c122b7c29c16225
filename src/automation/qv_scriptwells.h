// The client object, the one class that can be created from outside. It may be a part of another object
// (aggregation): its interfaces then count and answer through that one.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "session/qv_scriptwells_impl.h"

namespace qv {

// Makes one and hands out `iid` of it. With `outer` the object is a part of that one, which keeps what it
// gets and asks for IUnknown. E_POINTER, E_OUTOFMEMORY, E_NOINTERFACE; CLASS_E_NOAGGREGATION for an `outer`
// that asks for another interface.
HRESULT CreateQvScriptwellsObject(IUnknown* outer, const Guid& iid, void** object) noexcept;

class QvScriptwells final : public QvScriptwellsDispatch,
                            public QvClientServiceRawDispatch,
                            public ISupportErrorInfo,
                            public IProvideClassInfo {
 public:
  // Null for an object of its own. Throws `_com_error`, E_OUTOFMEMORY.
  explicit QvScriptwells(IUnknown* outer);

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return controlling_->AddRef(); }
  std::uint32_t Release() noexcept override { return controlling_->Release(); }

  HRESULT ConnectionModel(IConnectionModel** model) noexcept override;
  HRESULT Url(IUrl** url) noexcept override;
  HRESULT Duration(IDuration** duration) noexcept override;
  HRESULT ConnectionString(IConnectionString** connectionString) noexcept override;
  HRESULT AttachedFile(IAttachedFile** file) noexcept override;
  HRESULT Parameters(IParameters** parameters) noexcept override;
  HRESULT get_ServerName(WideString* serverName) noexcept override;
  HRESULT put_ServerName(const WideString& serverName) noexcept override;
  HRESULT get_Proxy(WideString* proxy) noexcept override;
  HRESULT put_Proxy(const WideString& proxy) noexcept override;
  HRESULT Init(IUnknown* pVal) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;
  HRESULT GetClassInfo(ITypeInfo** info) noexcept override;

  // The object's own identity, which an outer object holds.
  IUnknown* Inner() noexcept { return &inner_; }

 private:
  // Counts and answers for the object itself, whoever controls it.
  class InnerUnknown final : public IUnknown {
   public:
    explicit InnerUnknown(QvScriptwells* owner) noexcept : owner_(owner) {}
    HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
    std::uint32_t AddRef() noexcept override { return count_.Add(); }
    std::uint32_t Release() noexcept override;

   private:
    QvScriptwells* owner_;
    ReferenceCount count_;
  };

  HRESULT AnswerInnerQuery(const Guid& iid, void** object) noexcept;
  HRESULT Get(WideString* value, WideString (QvScriptwellsImpl::*get)()) noexcept;
  HRESULT Put(const WideString& value, void (QvScriptwellsImpl::*put)(WideString)) noexcept;

  ModuleLock lock_;
  InnerUnknown inner_;
  IUnknown* controlling_;  // not counted: an outer object owns this one
  QvScriptwellsImpl logic_;
};

}  // namespace qv
