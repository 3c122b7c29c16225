#include "components/http/http_exchange.h"

#include <poll.h>

#include <algorithm>
#include <string>
#include <utility>

#include "components/http/http_error.h"
#include "components/http/wire_tap.h"

namespace qv {
namespace {

constexpr std::size_t kReportedPiece =
    std::size_t{64} * 1024;  // sent between two notifications of a listener
constexpr std::size_t kHeadOnly = 0;

// The head that was fed with these bytes, of which it took `size`.
void ShowHead(const HeadReader& reader, std::string_view bytes, std::size_t size) {
  WireTap* const tap = ThreadWireTap();
  if (tap != nullptr) tap->OnAnswerBytes(bytes.substr(0, size));
  if (tap != nullptr && reader.IsComplete()) tap->OnAnswer(reader.Head());
}

}  // namespace

HttpExchange::HttpExchange(ConnectionPtr connection, TransferWatch& watch, bool answersHead)
    : connection_(std::move(connection)),
      watch_(watch),
      reader_(watch.Options().maxHeadBytes),
      answersHead_(answersHead) {}

void HttpExchange::Send(std::string_view headAndBody, std::size_t headBytes) {
  const std::int64_t total = static_cast<std::int64_t>(headAndBody.size() - headBytes);
  watch_.Report(true, 0, total);
  SendBytes(headAndBody, headBytes, total);
}

void HttpExchange::SendFile(std::string_view head, SourceFile& file) {
  watch_.Report(true, 0, file.Size());
  SendBytes(head, head.size(), file.Size());
  for (std::string_view piece = file.Next(); !piece.empty() && !answeredEarly_; piece = file.Next())
    SendBytes(piece, kHeadOnly, file.Size());
}

void HttpExchange::SendBytes(std::string_view bytes, std::size_t headBytes, std::int64_t total) {
  while (!bytes.empty() && !answeredEarly_) {
    const std::size_t before = bytes.size();
    if (!SendSome(&bytes)) continue;
    const std::size_t sent = before - bytes.size();
    const std::size_t ofHead = std::min(sent, headBytes);
    headBytes -= ofHead;
    ReportSent(sent, ofHead, total);
  }
}

// False if nothing was sent. If a server answers and closes before it has read all, sending fails, but an
// answer that has arrived is used.
bool HttpExchange::SendSome(std::string_view* bytes) {
  const std::size_t size = watch_.HasListener() ? std::min(bytes->size(), kReportedPiece) : bytes->size();
  try {
    const std::size_t sent = connection_->Send(bytes->substr(0, size));
    bytes->remove_prefix(sent);
    if (sent == 0) WaitToSend();
    if (sent != 0) watch_.Rate().Count(sent);
    return sent != 0;
  } catch (const HttpFailure& failure) {
    if (failure.Code() != HTTP_E_CUT_OFF || !TakeEarlyAnswer()) throw;
    return false;
  }
}

void HttpExchange::ReportSent(std::size_t bytes, std::size_t headBytes, std::int64_t total) {
  sent_ += static_cast<std::int64_t>(bytes - headBytes);
  watch_.Report(true, sent_, total);
}

void HttpExchange::WaitToSend() {
  const short ready = connection_->Wait(POLLIN | POLLOUT, watch_);
  if ((ready & POLLOUT) != 0 || (ready & POLLIN) == 0) return;
  const Connection::Arrival arrival = connection_->Receive();
  answeredEarly_ = FeedHead();
  if (arrival == Connection::Arrival::kClosed && !answeredEarly_)
    ThrowCurl(CURLE_GOT_NOTHING, "Empty reply from server");
}

// Reads available bytes without waiting.
bool HttpExchange::TakeEarlyAnswer() noexcept {
  try {
    while (!answeredEarly_ && connection_->Receive() == Connection::Arrival::kBytes)
      answeredEarly_ = FeedHead();
  } catch (...) {  // report the failure to send instead
  }
  return answeredEarly_;
}

bool HttpExchange::FeedHead() {
  const std::string_view bytes = connection_->Buffered();
  std::size_t used = bytes.size();  // of a head that is rejected, too
  try {
    used = reader_.Feed(bytes);
  } catch (...) {
    ShowHead(reader_, bytes, used);
    throw;
  }
  ShowHead(reader_, bytes, used);
  connection_->Take(used);
  if (!reader_.IsUnderWay()) watch_.Rate().Stop();
  return reader_.IsComplete();
}

void HttpExchange::ReceiveHead() {
  watch_.Rate().Stop();  // the server may take its time to process the request
  if (WireTap* const tap = ThreadWireTap()) tap->OnSent();
  while (!reader_.IsComplete()) {
    ReceiveMore();
    FeedHead();
  }
  framing_ = BodyFraming(reader_.Head(), answersHead_, watch_.Options().maxHeadBytes);
  if (!connection_->Buffered().empty()) watch_.Rate().Count(connection_->Buffered().size());
  watch_.Report(false, 0, framing_.Announced());
}

void HttpExchange::ReceiveMore() {
  const std::size_t before = connection_->Buffered().size();
  Connection::Arrival arrival = Connection::Arrival::kNothingYet;
  if (connection_->MayHoldBytes()) arrival = connection_->Receive();
  while (arrival == Connection::Arrival::kNothingYet) {
    connection_->Wait(POLLIN, watch_);
    arrival = connection_->Receive();
  }
  if (arrival == Connection::Arrival::kBytes)
    return watch_.Rate().Count(connection_->Buffered().size() - before);
  if (reader_.IsComplete()) return framing_.OnClosed();
  if (reader_.HasBegun()) ThrowCurl(CURLE_PARTIAL_FILE, "transfer closed in the head of the answer");
  ThrowCurl(CURLE_GOT_NOTHING, "Empty reply from server");
}

std::string_view HttpExchange::NextBody(std::size_t most) {
  while (!framing_.IsAtEnd()) {
    if (connection_->Buffered().empty()) {
      ReceiveMore();
      continue;
    }
    std::string_view data;
    connection_->Take(framing_.Take(connection_->Buffered(), most, &data));
    if (data.empty()) continue;
    bodyDone_ += static_cast<std::int64_t>(data.size());
    if (WireTap* const tap = ThreadWireTap()) tap->OnAnswerBody(data);
    watch_.Report(false, bodyDone_, framing_.Announced());
    return data;
  }
  return {};
}

// The end of a chunked body may have arrived with its last bytes.
void HttpExchange::TakeTrailers() {
  std::string_view data;
  connection_->Take(framing_.Take(connection_->Buffered(), 0, &data));
}

bool HttpExchange::IsReusable() {
  if (answeredEarly_ || !reader_.IsComplete() || !framing_.MayKeepConnection()) return false;
  if (!connection_->MayBeKept()) return false;
  // Some proxies close after each answer without saying so, and a request sent meanwhile is lost.
  if (connection_->Target().UsesPlainProxy() && !framing_.PromisesToKeepConnection()) return false;
  TakeTrailers();
  return framing_.IsAtEnd() && connection_->Buffered().empty();
}

ConnectionPtr HttpExchange::Finish() noexcept {
  try {
    if (IsReusable()) {
      connection_->ClearBuffer();
      return std::move(connection_);
    }
  } catch (...) {  // malformed trailers: the connection closes
  }
  connection_.reset();
  return nullptr;
}

}  // namespace qv
