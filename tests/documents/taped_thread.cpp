// Linked into a program on the interfaces, or into the library of classes: the thread that loads it records
// the tape SCRIPTWELLS_RECORD, or plays SCRIPTWELLS_REPLAY. Such programs have no option for tapes.
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "components/http/wire_tap.h"
#include "face/exchange/call_settings.h"
#include "face/exchange/call_tap.h"
#include "face/tape/session_tape.h"

namespace scriptwells {

namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// By the header SOAPAction.
Purpose PurposeOf(std::string_view head) {
  if (head.find("#CreateUserSession\r\n") != std::string_view::npos) return Purpose::kOpenSession;
  if (head.find("#CloseUserSession\r\n") != std::string_view::npos) return Purpose::kCloseSession;
  return Purpose::kExecute;
}

// A CallTap is made for one call whose purpose is known. Here calls are known by their requests, so each
// exchange gets one when its request comes. Files are not taped.
class ThreadTap final : public qv::WireTap {
 public:
  ThreadTap(const std::string& record, const std::string& replay) : tape_(record, replay) {
    settings_.tape = &tape_;
  }

  void SetUp(qv::HttpOptions*, qv::IHttpProgressPtr*) override {}
  bool OnOpen(const qv::WideString& protocol, const qv::WideString& host, std::uint16_t port,
              qv::WideString* proxy) override {
    call_.reset();
    server_ = {protocol, host, port, *proxy};
    return true;
  }
  std::unique_ptr<qv::WireLine> NewLine() override { return tape_.Connect(); }
  void OnHandshakeFailed() noexcept override {}
  void OnConnected(bool isKeptConnection) override { isKept_ = isKeptConnection; }
  void OnRequest(std::string_view head, std::string_view body) override {
    call_.emplace(settings_, PurposeOf(head));
    call_->OnOpen(server_.protocol, server_.host, server_.port, &server_.proxy);
    call_->OnConnected(isKept_);
    call_->OnRequest(head, body);
  }
  void OnFileRequest(std::string_view, const qv::WideString&) override { std::abort(); }
  void OnSent() override { call_->OnSent(); }
  void OnAnswerBytes(std::string_view bytes) override { call_->OnAnswerBytes(bytes); }
  void OnAnswer(const qv::ResponseHead& head) override { call_->OnAnswer(head); }
  bool MaySave(const qv::WideString&) override { return false; }
  void OnAnswerBody(std::string_view bytes) override { call_->OnAnswerBody(bytes); }
  void OnFailure(qv::HRESULT code) noexcept override {
    if (call_) call_->OnFailure(code);
  }
  void OnClose() override {
    if (call_) call_->OnClose();
  }

 private:
  struct Server {
    qv::WideString protocol, host;
    std::uint16_t port = 0;
    qv::WideString proxy;
  };

  SessionTape tape_;
  CallSettings settings_;
  Server server_;
  bool isKept_ = false;
  std::optional<CallTap> call_;
};

class TapedThread {
 public:
  TapedThread() {
    const std::string record = Variable("SCRIPTWELLS_RECORD");
    const std::string replay = Variable("SCRIPTWELLS_REPLAY");
    if (!record.empty() || !replay.empty()) qv::SetThreadWireTap(&tap_.emplace(record, replay));
  }
  ~TapedThread() { qv::SetThreadWireTap(nullptr); }
  TapedThread(const TapedThread&) = delete;
  TapedThread& operator=(const TapedThread&) = delete;

 private:
  std::optional<ThreadTap> tap_;
};

const TapedThread thread;

}  // namespace

}  // namespace scriptwells
