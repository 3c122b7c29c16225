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

// An in/out text for services, which may fill, replace or free it. It may contain a session id.
class ServiceText {
 public:
  ServiceText() : text_(AllocString(nullptr, kServiceTextUnits)) {
    if (text_ == nullptr) _com_raise_error(E_OUTOFMEMORY);
    MarkSecret(text_);
  }
  ~ServiceText() {
    MarkSecret(text_);  // the current text
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

// Uses only the returned object; the provider's result code is ignored.
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

// The model stays from now on, even if the services are missing.
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

// The raw interface leaves an error record, but ISupportErrorInfo names only the first interface, so the
// record is taken directly.
IConnectionModelPtr QvScriptwellsImpl::ReadyModel() {
  if (model_ == nullptr) model_ = CreateConnectionModel();
  IConnectionModelPtr model = model_;
  const IConnectionModelRawPtr raw = RawOf(model.get());
  ThrowIfFailed(raw->SetServer(serverName_, proxy_));
  // Held for the call: it calls the services, which may replace themselves here.
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
