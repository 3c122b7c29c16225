#include "tools/transfer/reporting_http.h"

#include <new>
#include <utility>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"

namespace qv::cli {

namespace {

ReportingHttp* g_current = nullptr;

class ReportingSession final : public IHttpSession, public ISupportErrorInfo {
 public:
  ReportingSession(IHttpSessionPtr inner, const std::string& proxy, HttpReports& reports)
      : inner_(std::move(inner)), proxy_(FromUtf8(proxy)), reports_(reports), note_(reports.note) {}

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid == IUnknown::kIid || iid == IHttpSession::kIid) *object = static_cast<IHttpSession*>(this);
    if (iid == ISupportErrorInfo::kIid) *object = static_cast<ISupportErrorInfo*>(this);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  std::uint32_t AddRef() noexcept override { return ++count_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --count_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override { return RecordsFor(iid); }

  HRESULT Open(const WideString& protocol, const WideString& host, std::uint16_t port,
               const WideString& secondSpare, const WideString& firstSpare,
               const WideString& proxy) noexcept override {
    note_ = ExchangeNote();
    const WideString& used = proxy.IsEmpty() || proxy_.IsEmpty() ? proxy : proxy_;
    try {
      note_.proxy = ToUtf8(used);
      note_.server = ToUtf8(protocol) + "://" + ToUtf8(host) + ":" + std::to_string(port);
    } catch (...) {
      return E_OUTOFMEMORY;
    }
    const HRESULT code = Noted(note_, inner_->Open(protocol, host, port, secondSpare, firstSpare, used));
    note_.connected = Succeeded(code);
    return code;
  }
  HRESULT Close() noexcept override { return inner_->Close(); }
  HRESULT OpenRequest(const WideString& verb, const WideString& path, const WideString& contentType,
                      std::uint32_t flags, IHttpRequest** request) noexcept override {
    if (request == nullptr) return E_POINTER;
    *request = nullptr;
    IHttpRequest* made = nullptr;
    const HRESULT code = Noted(note_, inner_->OpenRequest(verb, path, contentType, flags, &made));
    const IHttpRequestPtr inner(made, false);
    if (Failed(code) || !inner) return code;
    *request = new (std::nothrow) ReportingRequest(inner, reports_);
    return *request == nullptr ? E_OUTOFMEMORY : code;
  }

 private:
  ~ReportingSession() = default;

  std::uint32_t count_ = 1;
  IHttpSessionPtr inner_;
  WideString proxy_;
  HttpReports& reports_;
  ExchangeNote& note_;
};

// Asks the built-in class for a started session object.
IHttpSessionPtr MakeInner(ClassCreator builtIn) {
  void* object = nullptr;
  const HRESULT made = builtIn(IUnknown::kIid, &object);
  if (Failed(made)) _com_raise_error(made);
  const IUnknownPtr component(static_cast<IUnknown*>(object), false);
  const HRESULT started = OleRun(component.get());
  if (Failed(started)) _com_raise_error(started);
  return As<IHttpSession>(component);
}

// The thread's options limit each exchange; the budget limits all exchanges together.
void LimitTime(IHttpSession* session, const TimeBudget* budget) {
  if (budget == nullptr || budget->Left() == 0) return;
  const IHttpOptionsPtr limits = As<IHttpOptions>(session);
  HttpOptions options;
  ThrowIfFailed(limits->GetOptions(&options));
  options.totalTimeout = budget->Left();
  ThrowIfFailed(limits->SetOptions(options));
}

}  // namespace

ReportingHttp::ReportingHttp(std::string proxy, TransferProgress* progress, bool savesHidden,
                             const TimeBudget* budget)
    : proxy_(std::move(proxy)),
      budget_(budget),
      builtIn_(RegisterClassCreator(CLSID_HttpComponent, &ReportingHttp::Create)) {
  reports_.progress = progress;
  reports_.savesHidden = savesHidden;
  g_current = this;
}

ReportingHttp::~ReportingHttp() {
  g_current = nullptr;
  RegisterClassCreator(CLSID_HttpComponent, builtIn_);
}

HRESULT ReportingHttp::Create(const Guid& iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (g_current == nullptr || g_current->builtIn_ == nullptr) return REGDB_E_CLASSNOTREG;
  try {
    IHttpSessionPtr inner = MakeInner(g_current->builtIn_);
    if (!inner) return E_NOINTERFACE;
    LimitTime(inner.get(), g_current->budget_);
    const IHttpSessionPtr session(
        new ReportingSession(std::move(inner), g_current->proxy_, g_current->reports_), false);
    return session->QueryInterface(iid, object);
  } catch (const _com_error& error) {
    return error.Error();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace qv::cli
