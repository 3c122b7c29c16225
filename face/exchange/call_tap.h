// Sees what the HTTP component does for one call, with settings of that call.
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "components/http/wire_tap.h"
#include "face/exchange/call_settings.h"
#include "face/exchange/call_tape.h"
#include "face/exchange/exchange_record.h"
#include "face/exchange/shown_exchange.h"
#include "face/exchange/time_budget.h"

namespace scriptwells {

// On the stack or in an object there, so its reference count does nothing. Must outlive the call.
class CallTap final : public qv::WireTap, public qv::IHttpProgress {
 public:
  CallTap(const CallSettings& settings, Purpose purpose);

  // Ends the exchange that is under way, if there is one, and calls the listener.
  void EndExchange();
  const ExchangeRecord& Last() const noexcept { return record_; }
  // The first upload that the server answered with another status than success, such as "http://srv:80
  // answered the upload of /tmp/a.txt with the status 403"; empty for none.
  const std::string& RefusedUpload() const noexcept { return refusedUpload_; }
  const std::string& AnswerText() const noexcept { return answerText_; }
  // Rethrows what a listener or the tape threw.
  void RethrowFromListener() const;

  void SetUp(qv::HttpOptions* options, qv::IHttpProgressPtr* progress) override;
  bool OnOpen(const qv::WideString& protocol, const qv::WideString& host, std::uint16_t port,
              qv::WideString* proxy) override;
  std::unique_ptr<qv::WireLine> NewLine() override;
  void OnHandshakeFailed() noexcept override { record_.inHandshake = true; }
  void OnConnected(bool isKeptConnection) override;
  void OnRequest(std::string_view head, std::string_view body) override;
  void OnFileRequest(std::string_view head, const qv::WideString& path) override;
  void OnSent() override { record_.sent = true; }
  void OnAnswerBytes(std::string_view bytes) override;
  void OnAnswer(const qv::ResponseHead& head) override;
  bool MaySave(const qv::WideString& path) override;
  void OnAnswerBody(std::string_view bytes) override;
  void OnFailure(qv::HRESULT code) noexcept override;
  void OnClose() override { EndExchange(); }

  qv::HRESULT QueryInterface(const qv::Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return 2; }
  std::uint32_t Release() noexcept override { return 1; }
  qv::HRESULT OnProgress(bool sending, std::int64_t done, std::int64_t total) noexcept override;

 private:
  bool WantsProgress() const noexcept {
    return settings_.cancel.has_value() || settings_.progress != nullptr || settings_.listener != nullptr;
  }
  bool KeepsBody() const noexcept {
    return settings_.keepAnswer || taped_.has_value() || (shown_.has_value() && settings_.listenerBodies);
  }
  bool MayGoOn() const noexcept;
  Purpose NextPurpose() noexcept;
  void NoteRefusedUpload();
  template <class Show>
  void ShowBoth(const Show& show);
  void TellTape();
  void LearnSecrets();
  void LearnTicket(const std::string& ticket);
  Masking& Mask();
  void TellListener();
  template <class Call>
  void CallHost(const Call& call) noexcept;
  template <class Call>
  auto CallTapeOf(const Call& call);

  const CallSettings& settings_;
  Purpose purpose_;
  TimeBudget budget_;
  std::size_t exchanges_ = 0;
  bool open_ = false;
  ExchangeRecord record_;
  std::optional<ShownExchange> shown_;  // with a listener
  std::optional<ShownExchange> taped_;  // with a tape
  std::string fileBody_;                // of a download, with a tape
  std::optional<Masking> secrets_;      // once it is needed
  std::string refusedUpload_;
  std::string answerText_;
  std::exception_ptr thrown_;  // by a listener or the tape
};

}  // namespace scriptwells
