#include "session/qv_scriptwells_impl.h"

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/secret_text.h"

namespace qv {
namespace {

constexpr std::size_t kServiceTextUnits = 256;
constexpr std::u16string_view kNoProxy = u"@PROXY@";

// A text as services are handed it: with room that they may fill, or replace, or free. It may come to hold a
// session's id.
class ServiceText {
 public:
  ServiceText() : text_(AllocString(nullptr, kServiceTextUnits)) {
    if (text_ == nullptr) _com_raise_error(E_OUTOFMEMORY);
    MarkSecret(text_);
  }
  ~ServiceText() {
    MarkSecret(text_);  // whatever stands there now
    FreeString(text_);
  }
  ServiceText(const ServiceText&) = delete;
  ServiceText& operator=(const ServiceText&) = delete;

  BStr* Place() { return &text_; }
  bool IsNull() const { return text_ == nullptr; }
  // Up to the first null unit; null for none.
  WideString Text() const {
    WideString text(static_cast<const char16_t*>(text_));
    MarkSecret(text);
    return text;
  }

 private:
  BStr text_;
};

IQvServiceProviderPtr ProviderOf(IUnknown* object) {
  return As<IQvServiceProvider>(object);
}

// What counts is the object; the code of a provider that knows none is not looked at.
IUnknownPtr FindServices(IQvServiceProvider* provider) {
  IUnknown* raw = nullptr;
  provider->GetService(kClientServicesName, &raw);
  return IUnknownPtr(raw, false);
}

IConnectionModelRawPtr RawOf(IConnectionModel* model) {
  IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model);
  if (raw == nullptr) _com_raise_error(E_POINTER);
  return raw;
}

void Check(HRESULT code, IConnectionString* object) {
  ThrowIfFailed(code, object, IConnectionString::kIid);
}

}  // namespace

// The model is there from now on, also when the services are not.
void QvScriptwellsImpl::Init(IUnknown* pVal) {
  const IQvServiceProviderPtr provider = ProviderOf(pVal);
  if (provider == nullptr) _com_raise_error(E_POINTER);
  const IUnknownPtr service = FindServices(provider.get());
  clientServices_ = As<IQvClientServices>(service);
  if (model_ == nullptr) model_ = CreateConnectionModel();
  const IQvClientServicesPtr services(Services());
  ServiceText usid;
  services->GetUsid(usid.Place());
  const IConnectionModelPtr model = model_;
  ThrowIfFailed(model->SetUSID(usid.Text()), model.get(), IConnectionModel::kIid);
}

IConnectionModelPtr QvScriptwellsImpl::get_ConnectionModel() {
  try {
    return ReadyModel();
  } catch (const _com_error&) {
    throw;
  } catch (...) {
    throw EQvException(u"Cannot create ConnectionModel object.");
  }
}

// The raw interface leaves its words on the thread without saying so (ISupportErrorInfo names the first
// interface only), so they are read from there.
IConnectionModelPtr QvScriptwellsImpl::ReadyModel() {
  if (model_ == nullptr) model_ = CreateConnectionModel();
  IConnectionModelPtr model = model_;
  const IConnectionModelRawPtr raw = RawOf(model.get());
  ThrowIfFailed(raw->SetServer(serverName_, proxy_));
  // Held for the call: the services are asked there, and may replace themselves here.
  ThrowIfFailed(raw->SetClientServices(IQvClientServicesPtr(clientServices_).get()));
  const IQvClientServicesPtr services(Services());
  ServiceText usid;
  services->GetUsid(usid.Place());
  if (!usid.IsNull()) ThrowIfFailed(model->SetUSID(usid.Text()), model.get(), IConnectionModel::kIid);
  return model;
}

IQvClientServices* QvScriptwellsImpl::Services() const {
  if (clientServices_ == nullptr) _com_raise_error(E_POINTER);
  return clientServices_.get();
}

IConnectionStringPtr QvScriptwellsImpl::get_ConnectionString() {
  IConnectionStringPtr fields = CreateConnectionString();
  ServiceText text;
  const IQvClientServicesPtr services(Services());
  services->GetReplicaId(text.Place());
  if (!text.IsNull()) Check(fields->put_ReplicaID(text.Text()), fields.get());
  services->GetUserName(text.Place());
  if (!text.IsNull()) Check(fields->put_UserName(text.Text()), fields.get());
  return fields;
}

IUrlPtr QvScriptwellsImpl::get_Url() {
  return CreateUrl();
}

IDurationPtr QvScriptwellsImpl::get_Duration() {
  return CreateDuration();
}

IAttachedFilePtr QvScriptwellsImpl::get_AttachedFile() {
  return CreateAttachedFile();
}

IParametersPtr QvScriptwellsImpl::get_Parameters() {
  return CreateParameters();
}

WideString QvScriptwellsImpl::get_ServerName() {
  return serverName_;
}

void QvScriptwellsImpl::put_ServerName(WideString serverName) {
  serverName_ = serverName;
}

WideString QvScriptwellsImpl::get_Proxy() {
  return proxy_;
}

void QvScriptwellsImpl::put_Proxy(WideString proxy) {
  proxy_ = proxy.view() == kNoProxy ? WideString(u"") : proxy;
}

}  // namespace qv
