#include "components/http/http_request.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "com/guarded.h"
#include "components/http/http_error.h"
#include "components/http/http_syntax.h"
#include "components/http/source_file.h"
#include "components/http/target_file.h"
#include "components/http/text_codec.h"
#include "components/http/wire_tap.h"

namespace qv {
namespace {

constexpr std::size_t kFilePiece = std::size_t{64} * 1024;

// Servers send header values in UTF-8 or in Latin-1.
WideString HeaderText(std::string_view value) {
  return IsUtf8(value) ? DecodeUtf8(value) : DecodeLatin1(value);
}

std::int32_t CutTo32(std::int64_t count) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(count)));
}

HRESULT ReportFailure() noexcept {
  return TappedFailure(ReportCurrentException(IHttpRequest::kIid));
}

}  // namespace

class HttpRequest::BusyMark {
 public:
  explicit BusyMark(HttpRequest* request) : request_(request), keepAlive_(request) { request->busy_ = true; }
  ~BusyMark() { request_->busy_ = false; }
  BusyMark(const BusyMark&) = delete;
  BusyMark& operator=(const BusyMark&) = delete;

 private:
  HttpRequest* request_;
  IHttpRequestPtr keepAlive_;
};

HttpRequest::HttpRequest(HttpSessionPtr session, std::uint32_t opening, const Endpoint& endpoint,
                         std::u16string_view verb, std::u16string_view path)
    : session_(std::move(session)), opening_(opening), head_(endpoint, verb, path) {}

HttpRequest::~HttpRequest() {
  End();
}

void HttpRequest::ExpectNew() const {
  if (busy_) ThrowWrongState("An operation of the request is under way");
  if (state_ == State::kClosed) ThrowWrongState("The request is closed");
  if (state_ != State::kNew) ThrowWrongState("The request was sent already");
}

void HttpRequest::ExpectAnswered() const {
  if (state_ == State::kClosed) ThrowWrongState("The request is closed");
  if (state_ == State::kFailed) ThrowWrongState("The request has failed");
  if (state_ == State::kNew) ThrowWrongState("The request was not sent yet");
}

HRESULT HttpRequest::GetStatus(std::uint32_t* status) noexcept {
  return GuardedBy(ReportFailure, status, [&] {
    *status = 0;
    if (state_ == State::kClosed) ThrowWrongState("The request is closed");
    if (state_ == State::kAnswered) *status = static_cast<std::uint32_t>(exchange_->Head().Status());
  });
}

HRESULT HttpRequest::SetHeader(const WideString& name, const WideString& value) noexcept {
  return GuardedBy(ReportFailure, [&] {
    ExpectNew();
    head_.Add(name.view(), value.view());
  });
}

HRESULT HttpRequest::Send(const WideString& body, const WideString& extra) noexcept {
  return GuardedBy(ReportFailure, [&] {
    ExpectNew();
    const BusyMark mark(this);
    CheckedSend(body.view(), extra.view());
  });
}

void HttpRequest::BeginExchange() {
  if (aborted_) ThrowCurl(CURLE_ABORTED_BY_CALLBACK);
  options_ = session_->Options();
  progress_ = session_->Progress();
  watch_.emplace(options_, progress_.get(), aborted_, session_->TakeConnectingTime());
  exchange_.emplace(session_->Lend(this, opening_, *watch_), *watch_, head_.VerbIsHead());
}

// The head is written into the room before the body, so that both are sent together without another copy.
void HttpRequest::CheckedSend(std::u16string_view body, std::u16string_view extra) {
  const RoomyBytes wire = EncodeUtf8WithRoom(body, extra, head_.MostBytes());
  const SecretBytes head = head_.Text(static_cast<std::int64_t>(wire.size));
  char* start = wire.Text() - head.size();
  head.view().copy(start, head.size());
  BeginExchange();
  try {
    if (WireTap* const tap = ThreadWireTap()) tap->OnRequest(head.view(), {wire.Text(), wire.size});
    exchange_->Send({start, head.size() + wire.size}, head.size());
    exchange_->ReceiveHead();
  } catch (...) {
    Fail();
    throw;
  }
  state_ = State::kAnswered;
}

HRESULT HttpRequest::SendFile(const WideString& path) noexcept {
  return GuardedBy(ReportFailure, [&] {
    ExpectNew();
    const BusyMark mark(this);
    CheckedSendFile(path);
  });
}

void HttpRequest::CheckedSendFile(const WideString& path) {
  SourceFile file(path);
  const SecretBytes head = head_.Text(file.Size());
  BeginExchange();
  try {
    if (WireTap* const tap = ThreadWireTap()) tap->OnFileRequest(head.view(), path);
    exchange_->SendFile(head.view(), file);
    exchange_->ReceiveHead();
  } catch (...) {
    Fail();
    throw;
  }
  state_ = State::kAnswered;
}

HRESULT HttpRequest::GetHeader(const WideString& name, WideString* value) noexcept {
  return GuardedBy(ReportFailure, value, [&] {
    *value = WideString();
    ExpectAnswered();
    *value = HeaderValue(name.view());
  });
}

WideString HttpRequest::HeaderValue(std::u16string_view name) const {
  const ResponseHead& head = exchange_->Head();
  if (EqualsIgnoringCase(name, "StatusCode")) return DecodeLatin1(std::to_string(head.Status()));
  std::string_view value;
  const bool found = IsToken(name) && head.Find(std::string(name.begin(), name.end()), &value);
  return found ? HeaderText(value) : WideString();
}

HRESULT HttpRequest::Read(std::int32_t length, WideString* text, std::int32_t* count) noexcept {
  return GuardedBy(ReportFailure, text == nullptr ? nullptr : count, [&] {
    *text = WideString();
    *count = 0;
    ExpectAnswered();
    if (busy_) ThrowWrongState("An operation of the request is under way");
    const BusyMark mark(this);
    *text = CheckedRead(length);
    *count = length;
  });
}

void HttpRequest::CheckLimits(std::int32_t length) const {
  if (length < 0) ThrowBadArgument("The length to read is negative");
  const std::int64_t limit = options_.maxBodyBytes;
  if (limit > 0 && (exchange_->Announced() > limit || exchange_->BodyDone() + length > limit))
    ThrowCurl(CURLE_FILESIZE_EXCEEDED, "Maximum file size exceeded");
}

WideString HttpRequest::CheckedRead(std::int32_t length) {
  CheckLimits(length);
  try {
    return bodyText_.Read(*exchange_, static_cast<std::size_t>(length));
  } catch (...) {
    Fail();
    throw;
  }
}

HRESULT HttpRequest::ReadToFile(const WideString& path, std::int32_t* count) noexcept {
  return GuardedBy(ReportFailure, count, [&] {
    *count = 0;
    ExpectAnswered();
    if (busy_) ThrowWrongState("An operation of the request is under way");
    const BusyMark mark(this);
    *count = CutTo32(CheckedReadToFile(path));
  });
}

std::int64_t HttpRequest::CheckedReadToFile(const WideString& path) {
  WireTap* const tap = ThreadWireTap();
  if (tap != nullptr && !tap->MaySave(path)) throw HttpFailure(E_FAIL, "The file is refused");
  TargetFile target(path, options_.replaceFiles);
  const std::int64_t before = exchange_->BodyDone();
  try {
    for (std::string_view piece = exchange_->NextBody(kFilePiece); !piece.empty();
         piece = exchange_->NextBody(kFilePiece))
      target.Write(piece);
    target.Commit();
  } catch (...) {
    Fail();
    throw;
  }
  return exchange_->BodyDone() - before;
}

HRESULT HttpRequest::Abort() noexcept {
  aborted_ = true;
  return S_OK;
}

HRESULT HttpRequest::Close() noexcept {
  return GuardedBy(ReportFailure, [&] {
    if (busy_) ThrowWrongState("An operation of the request is under way");
    End();
  });
}

void HttpRequest::End() noexcept {
  state_ = State::kClosed;
  if (!exchange_.has_value()) return;
  ConnectionPtr connection = exchange_->Finish();
  exchange_.reset();
  session_->TakeBack(std::move(connection));
}

void HttpRequest::Fail() noexcept {
  state_ = State::kFailed;
  if (!exchange_.has_value()) return;
  exchange_.reset();
  session_->TakeBack(nullptr);
}

}  // namespace qv
