#include "tools/reporting_http.h"

#include <new>
#include <utility>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/error_info.h"

namespace qv::cli {

namespace {

ReportingHttp* g_current = nullptr;

// Notes a failure with the words of the error record, and leaves the record waiting for the library.
HRESULT Noted(ExchangeNote& note, HRESULT code) noexcept {
  if (Succeeded(code) || note.failure) return code;
  note.failure = code;
  ErrorInfo info;
  if (!GetErrorInfo(&info)) return code;
  SetErrorInfo(info);
  try {
    note.words = ToUtf8(info.description);
  } catch (...) {
    note.words.clear();
  }
  return code;
}

// What both objects need beside their own interface. Error records are those of the built-in component.
HRESULT RecordsFor(const Guid& iid) noexcept {
  return iid == IHttpSession::kIid || iid == IHttpRequest::kIid ? S_OK : S_FALSE;
}

class ReportingRequest final : public IHttpRequest, public ISupportErrorInfo {
 public:
  ReportingRequest(IHttpRequestPtr inner, ExchangeNote& note) : inner_(std::move(inner)), note_(note) {}

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid == IUnknown::kIid || iid == IHttpRequest::kIid) *object = static_cast<IHttpRequest*>(this);
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

  HRESULT GetStatus(std::uint32_t* status) noexcept override { return inner_->GetStatus(status); }
  HRESULT SetHeader(const WideString& name, const WideString& value) noexcept override {
    return Noted(note_, inner_->SetHeader(name, value));
  }
  HRESULT Send(const WideString& body, const WideString& extra) noexcept override {
    return Answered(inner_->Send(body, extra));
  }
  HRESULT SendFile(const WideString& path) noexcept override { return Answered(inner_->SendFile(path)); }
  HRESULT GetHeader(const WideString& name, WideString* value) noexcept override {
    return Noted(note_, inner_->GetHeader(name, value));
  }
  HRESULT Read(std::int32_t length, WideString* text, std::int32_t* count) noexcept override {
    const HRESULT code = Noted(note_, inner_->Read(length, text, count));
    if (Succeeded(code) && text != nullptr)
      note_.holdsFault = text->view().find(u"<soap:Fault") != std::u16string_view::npos;
    return code;
  }
  HRESULT ReadToFile(const WideString& path, std::int32_t* count) noexcept override {
    return Noted(note_, inner_->ReadToFile(path, count));
  }
  HRESULT Abort() noexcept override { return inner_->Abort(); }
  HRESULT Close() noexcept override { return inner_->Close(); }

 private:
  ~ReportingRequest() = default;

  HRESULT Answered(HRESULT code) noexcept {
    if (Failed(code)) return Noted(note_, code);
    std::uint32_t status = 0;
    if (Failed(inner_->GetStatus(&status))) return code;
    try {
      note_.httpStatus = std::to_string(status);
    } catch (...) {
      note_.httpStatus.clear();
    }
    return code;
  }

  std::uint32_t count_ = 1;
  IHttpRequestPtr inner_;
  ExchangeNote& note_;
};

class ReportingSession final : public IHttpSession, public ISupportErrorInfo {
 public:
  ReportingSession(IHttpSessionPtr inner, const std::string& proxy, ExchangeNote& note)
      : inner_(std::move(inner)), proxy_(FromUtf8(proxy)), note_(note) {}

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
    *request = new (std::nothrow) ReportingRequest(inner, note_);
    return *request == nullptr ? E_OUTOFMEMORY : code;
  }

 private:
  ~ReportingSession() = default;

  std::uint32_t count_ = 1;
  IHttpSessionPtr inner_;
  WideString proxy_;
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
  return IHttpSessionPtr(static_cast<IHttpSession*>(QueryFor(component.get(), IHttpSession::kIid)), false);
}

}  // namespace

ReportingHttp::ReportingHttp(std::string proxy)
    : proxy_(std::move(proxy)), builtIn_(RegisterClassCreator(CLSID_HttpComponent, &ReportingHttp::Create)) {
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
    const IHttpSessionPtr session(new ReportingSession(std::move(inner), g_current->proxy_, g_current->note_),
                                  false);
    return session->QueryInterface(iid, object);
  } catch (const _com_error& error) {
    return error.Error();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace qv::cli
