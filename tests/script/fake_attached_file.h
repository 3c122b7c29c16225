// An attached file as another program might bring it: it notes its calls, each with the number of calls that
// the HTTP component had by then, keeps ticket and flag by the usual rule, and fails where a test says.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "automation/dispatch_faces.h"
#include "fixtures/fake_http.h"
#include "fixtures/fake_object.h"
#include "fixtures/shown_text.h"
#include "qvscriptwells/value_objects.h"

namespace qv {

class FakeAttachedFile final : public FakeObject<AttachedFileDispatch> {
 public:
  FakeAttachedFile(const FakeHttp* http, const WideString& name) : http_(http), name_(name) {}

  // The operation of this name fails and changes nothing.
  void Fail(const std::string& operation, HRESULT code) { failures_[operation] = code; }
  // Other languages say true with other numbers, too.
  void Hold(const WideString& ticket, VARIANT_BOOL flag = VARIANT_TRUE) {
    ticket_ = ticket;
    flag_ = flag;
  }
  // Such as "put_TicketId(t1) after 15".
  const std::vector<std::string>& Log() const { return log_; }
  VARIANT_BOOL Flag() const { return flag_; }

  HRESULT get_Filename(WideString* value) noexcept override {
    const HRESULT code = Note("get_Filename");
    if (!Failed(code)) *value = name_;
    return code;
  }
  HRESULT get_TicketId(WideString* value) noexcept override {
    const HRESULT code = Note("get_TicketId");
    if (Failed(code)) return code;
    *value = ticket_;
    flag_ = VARIANT_FALSE;
    return code;
  }
  HRESULT put_TicketId(const WideString& value) noexcept override {
    const HRESULT code = Note("put_TicketId", "(" + Shown(value) + ")");
    if (!Failed(code)) Hold(value);
    return code;
  }
  HRESULT IsTicketId(VARIANT_BOOL* value) noexcept override {
    const HRESULT code = Note("IsTicketId");
    if (!Failed(code)) *value = flag_;
    return code;
  }
  // No transfer asks for these.
  HRESULT Init(const WideString&) noexcept override { return Unwanted("Init"); }
  HRESULT put_Filename(const WideString&) noexcept override { return Unwanted("put_Filename"); }
  HRESULT get_FileId(WideString*) noexcept override { return Unwanted("get_FileId"); }
  HRESULT put_FileId(const WideString&) noexcept override { return Unwanted("put_FileId"); }
  HRESULT get_SourceFileLifeTime(std::int32_t*) noexcept override {
    return Unwanted("get_SourceFileLifeTime");
  }
  HRESULT put_SourceFileLifeTime(std::int32_t) noexcept override {
    return Unwanted("put_SourceFileLifeTime");
  }
  HRESULT get_CleanUp(std::int32_t*) noexcept override { return Unwanted("get_CleanUp"); }
  HRESULT put_CleanUp(std::int32_t) noexcept override { return Unwanted("put_CleanUp"); }

 private:
  HRESULT Note(const std::string& operation, const std::string& argument = "") {
    log_.push_back(operation + argument + " after " + std::to_string(http_->Calls().size()));
    const auto failure = failures_.find(operation);
    return failure == failures_.end() ? S_OK : failure->second;
  }
  HRESULT Unwanted(const char* operation) {
    log_.emplace_back(operation);
    return E_NOTIMPL;
  }

  const FakeHttp* http_;
  WideString name_;
  WideString ticket_;
  VARIANT_BOOL flag_ = VARIANT_FALSE;
  std::map<std::string, HRESULT> failures_;
  std::vector<std::string> log_;
};

using FakeAttachedFilePtr = boost::intrusive_ptr<FakeAttachedFile>;

}  // namespace qv
