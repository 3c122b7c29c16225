#include "automation/qv_scriptwells.h"

#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "session/qv_scriptwells_impl.h"

namespace qv {
namespace {

using Logic = QvScriptwellsImpl;

// The client object. It can be aggregated: its interfaces then count references and answer queries through
// the outer object. It keeps itself alive during operations that call the host's services, since these may
// release it.
class QvScriptwells final : public CountedObject<QvScriptwellsDispatch, QvClientServiceRawDispatch,
                                                 SupportsErrorInfo<IQvScriptwells>, IProvideClassInfo> {
 public:
  // `outer` is null for an object that is not aggregated. Throws `_com_error`, E_OUTOFMEMORY.
  explicit QvScriptwells(IUnknown* outer) : inner_(*this), controlling_(outer == nullptr ? &inner_ : outer) {}

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    return controlling_->QueryInterface(iid, object);
  }
  std::uint32_t AddRef() noexcept override { return controlling_->AddRef(); }
  std::uint32_t Release() noexcept override { return controlling_->Release(); }

  HRESULT ConnectionModel(IConnectionModel** model) noexcept override {
    return logic_.Run(model, [&](Logic& logic) {
      const IQvScriptwellsPtr self(this);
      *model = logic.get_ConnectionModel().detach();
    });
  }
  HRESULT Url(IUrl** url) noexcept override {
    return logic_.Run(url, [&](Logic& logic) { *url = logic.get_Url().detach(); });
  }
  HRESULT Duration(IDuration** duration) noexcept override {
    return logic_.Run(duration, [&](Logic& logic) { *duration = logic.get_Duration().detach(); });
  }
  HRESULT ConnectionString(IConnectionString** connectionString) noexcept override {
    return logic_.Run(connectionString, [&](Logic& logic) {
      const IQvScriptwellsPtr self(this);
      *connectionString = logic.get_ConnectionString().detach();
    });
  }
  HRESULT AttachedFile(IAttachedFile** file) noexcept override {
    return logic_.Run(file, [&](Logic& logic) { *file = logic.get_AttachedFile().detach(); });
  }
  HRESULT Parameters(IParameters** parameters) noexcept override {
    return logic_.Run(parameters, [&](Logic& logic) { *parameters = logic.get_Parameters().detach(); });
  }
  HRESULT get_ServerName(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_ServerName);
  }
  HRESULT put_ServerName(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_ServerName);
  }
  HRESULT get_Proxy(WideString* value) noexcept override { return logic_.Get(value, &Logic::get_Proxy); }
  HRESULT put_Proxy(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_Proxy);
  }
  HRESULT Init(IUnknown* pVal) noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IQvScriptwellsPtr self(this);
      logic.Init(pVal);
    });
  }

  HRESULT GetClassInfo(ITypeInfo** info) noexcept override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    return TYPE_E_CANTLOADLIBRARY;
  }

  // The object's own IUnknown, which an outer object holds.
  IUnknown* Inner() noexcept { return &inner_; }

 private:
  // Counts and answers for the object itself, even if it is aggregated.
  class InnerUnknown final : public IUnknown {
   public:
    explicit InnerUnknown(QvScriptwells& owner) noexcept : owner_(owner) {}
    HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
      if (iid != IUnknown::kIid) return owner_.CountedObject::QueryInterface(iid, object);
      if (object == nullptr) return E_POINTER;
      *object = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    std::uint32_t AddRef() noexcept override { return owner_.CountedObject::AddRef(); }
    std::uint32_t Release() noexcept override { return owner_.CountedObject::Release(); }

   private:
    QvScriptwells& owner_;
  };

  ModuleLock lock_;
  InnerUnknown inner_;
  IUnknown* controlling_;  // not counted: an outer object owns this one
  GuardedLogic<Logic, CLSID_QvScriptwells> logic_;
};

}  // namespace

HRESULT CreateQvScriptwellsObject(IUnknown* outer, const Guid& iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr && iid != IUnknown::kIid) return CLASS_E_NOAGGREGATION;
  try {
    const IUnknownPtr inner((new QvScriptwells(outer))->Inner());
    return inner->QueryInterface(iid, object);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

IQvScriptwellsPtr CreateQvScriptwells() {
  return IQvScriptwellsPtr(new QvScriptwells(nullptr));
}

IQvScriptwellsPtr CreateQvScriptwells(const WideString& serverName, const WideString& proxy,
                                      IQvServiceProvider* provider) {
  const boost::intrusive_ptr<QvScriptwells> client(new QvScriptwells(nullptr));
  ThrowIfFailed(client->Init(provider));
  ThrowIfFailed(client->put_ServerName(serverName));
  ThrowIfFailed(client->put_Proxy(proxy));
  return client;
}

IConnectionModelPtr ModelOf(IQvScriptwells* client) {
  if (client == nullptr) _com_raise_error(E_POINTER);
  IConnectionModelPtr model;
  ThrowIfFailed(client->ConnectionModel(Put(model)));
  return model;
}

}  // namespace qv
