#include "tools/transfer/reporting_request.h"

#include "qvscriptwells/error_info.h"
#include "qvscriptwells/native_path.h"

namespace qv::cli {

namespace {

bool Holds(const WideString& text, std::u16string_view part) {
  return text.view().find(part) != std::u16string_view::npos;
}

Envelope EnvelopeOf(const WideString& text) {
  if (Holds(text, u"SOAP:Envelope") || Holds(text, u"soap:Envelope")) return Envelope::kKnown;
  return Holds(text, u":Envelope") || Holds(text, u"<Envelope") ? Envelope::kForeign : Envelope::kNone;
}

}  // namespace

HRESULT Noted(ExchangeNote& note, HRESULT code) noexcept {
  if (Succeeded(code) || note.failure) return code;
  note.failure = code;
  ErrorInfo info;
  if (!GetErrorInfo(&info)) return code;
  SetErrorInfo(info);
  try {
    note.message = ToUtf8(info.description);
  } catch (...) {
    note.message.clear();
  }
  return code;
}

HRESULT RecordsFor(const Guid& iid) noexcept {
  return iid == IHttpSession::kIid || iid == IHttpRequest::kIid ? S_OK : S_FALSE;
}

HRESULT ReportingRequest::QueryInterface(const Guid& iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (iid == IUnknown::kIid || iid == IHttpRequest::kIid) *object = static_cast<IHttpRequest*>(this);
  if (iid == ISupportErrorInfo::kIid) *object = static_cast<ISupportErrorInfo*>(this);
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

std::uint32_t ReportingRequest::Release() noexcept {
  const std::uint32_t left = --count_;
  if (left == 0) delete this;
  return left;
}

HRESULT ReportingRequest::Send(const WideString& body, const WideString& extra) noexcept {
  const HRESULT code = Answered(inner_->Send(body, extra));
  TransferEnds();
  return code;
}

HRESULT ReportingRequest::SendFile(const WideString& path) noexcept {
  FileBegins(path);
  const HRESULT code = Answered(inner_->SendFile(path));
  TransferEnds();
  try {
    if (Succeeded(code) && !IsSuccess(note_.httpStatus))
      reports_.refusedUploads.push_back({note_.server, NativePath(path), note_.httpStatus});
  } catch (...) {  // the call goes on; the server reports what is missing
  }
  return code;
}

HRESULT ReportingRequest::GetHeader(const WideString& name, WideString* value) noexcept {
  const HRESULT code = Noted(note_, inner_->GetHeader(name, value));
  try {
    if (Succeeded(code) && name == WideString(u"Content-Disposition")) note_.fileHeader = ToUtf8(*value);
  } catch (...) {
    note_.fileHeader.clear();
  }
  return code;
}

HRESULT ReportingRequest::Read(std::int32_t length, WideString* text, std::int32_t* count) noexcept {
  const HRESULT code = Noted(note_, inner_->Read(length, text, count));
  TransferEnds();
  if (Failed(code) || text == nullptr) return code;
  note_.holdsFault = Holds(*text, u"<soap:Fault");
  note_.envelope = EnvelopeOf(*text);
  return code;
}

HRESULT ReportingRequest::ReadToFile(const WideString& path, std::int32_t* count) noexcept {
  ClearErrorInfo();
  try {
    if (!IsSuccess(note_.httpStatus) || !SavesUnder(path)) return E_FAIL;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  FileBegins(path);
  const HRESULT code = Noted(note_, inner_->ReadToFile(path, count));
  TransferEnds();
  return code;
}

bool ReportingRequest::SavesUnder(const WideString& path) {
  const std::string file = NativePath(path);
  note_.nameFault = FaultOfName(file.substr(file.rfind('/') + 1), reports_.savesHidden);
  return note_.nameFault == NameFault::kNone;
}

HRESULT ReportingRequest::Answered(HRESULT code) noexcept {
  if (Failed(code)) return Noted(note_, code);
  WideString status;
  if (Failed(inner_->GetHeader(u"StatusCode", &status))) return code;
  try {
    note_.httpStatus = ToUtf8(status);
  } catch (...) {
    note_.httpStatus.clear();
  }
  return code;
}

void ReportingRequest::FileBegins(const WideString& path) const noexcept {
  try {
    if (reports_.progress != nullptr) reports_.progress->FileBegins(NativePath(path));
  } catch (...) {  // the transfer goes on without a name
  }
}

void ReportingRequest::TransferEnds() const noexcept {
  if (reports_.progress != nullptr) reports_.progress->TransferEnds();
}

}  // namespace qv::cli
