// One request of the HTTP component, observed for reporting_http.h.
#pragma once

#include "qvscriptwells/error_info.h"
#include "qvscriptwells/http_component.h"
#include "tools/transfer/exchange_note.h"
#include "tools/transfer/transfer_progress.h"

namespace qv::cli {

// Where sessions and requests report to. Must outlive them.
struct HttpReports {
  ExchangeNote note;
  std::vector<RefusedUpload> refusedUploads;
  TransferProgress* progress = nullptr;  // may be null
  bool savesHidden = false;              // see FaultOfName in saved_name.h
};

// Notes the first failure with the message of the error record. The record stays for the library.
HRESULT Noted(ExchangeNote& note, HRESULT code) noexcept;
// Whether the interface leaves error records (ISupportErrorInfo). They are those of the built-in component.
HRESULT RecordsFor(const Guid& iid) noexcept;

class ReportingRequest final : public IHttpRequest, public ISupportErrorInfo {
 public:
  ReportingRequest(IHttpRequestPtr inner, HttpReports& reports)
      : inner_(std::move(inner)), reports_(reports), note_(reports.note) {}

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return ++count_; }
  std::uint32_t Release() noexcept override;
  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override { return RecordsFor(iid); }

  HRESULT GetStatus(std::uint32_t* status) noexcept override { return inner_->GetStatus(status); }
  HRESULT SetHeader(const WideString& name, const WideString& value) noexcept override {
    return Noted(note_, inner_->SetHeader(name, value));
  }
  HRESULT Send(const WideString& body, const WideString& extra) noexcept override;
  HRESULT SendFile(const WideString& path) noexcept override;
  HRESULT GetHeader(const WideString& name, WideString* value) noexcept override;
  HRESULT Read(std::int32_t length, WideString* text, std::int32_t* count) noexcept override;
  // Does not save the body of an answer with an error status, nor a name that this program rejects. The
  // library would save both.
  HRESULT ReadToFile(const WideString& path, std::int32_t* count) noexcept override;
  HRESULT Abort() noexcept override { return inner_->Abort(); }
  HRESULT Close() noexcept override { return inner_->Close(); }

 private:
  ~ReportingRequest() = default;

  HRESULT Answered(HRESULT code) noexcept;
  bool SavesUnder(const WideString& path);
  void FileBegins(const WideString& path) const noexcept;
  void TransferEnds() const noexcept;

  std::uint32_t count_ = 1;
  IHttpRequestPtr inner_;
  HttpReports& reports_;
  ExchangeNote& note_;
};

}  // namespace qv::cli
