// One request and its answer on one connection. Nothing is ever sent twice; there are no retries.
#pragma once

#include <cstdint>
#include <string_view>

#include "components/http/body_framing.h"
#include "components/http/connection.h"
#include "components/http/head_reader.h"
#include "components/http/source_file.h"
#include "components/http/transfer_watch.h"

namespace qv {

class HttpExchange {
 public:
  // Takes ownership of `connection`, which is idle. Borrows `watch` for its lifetime. `answersHead`: the
  // request's verb is HEAD, so the answer has no body, even if its head announces one.
  HttpExchange(ConnectionPtr connection, TransferWatch& watch, bool answersHead);

  // Sends head and body, which are adjacent in memory. Stops early if the server has answered.
  void Send(std::string_view headAndBody, std::size_t headBytes);
  // Sends `head` and the file's content.
  void SendFile(std::string_view head, SourceFile& file);
  // Waits for the head of the answer.
  void ReceiveHead();

  const ResponseHead& Head() const noexcept { return reader_.Head(); }
  // Bytes of the body, -1 if not announced.
  std::int64_t Announced() const noexcept { return framing_.Announced(); }
  std::int64_t BodyDone() const noexcept { return bodyDone_; }
  // The next bytes of the body, at most `most` (not 0); empty at its end. The view is valid until the next
  // call.
  std::string_view NextBody(std::size_t most);
  bool IsAtEnd() const noexcept { return framing_.IsAtEnd(); }

  // Returns the connection if it may serve another request; else closes it and returns null.
  ConnectionPtr Finish() noexcept;

 private:
  void SendBytes(std::string_view bytes, std::size_t headBytes, std::int64_t total);
  bool SendSome(std::string_view* bytes);
  void WaitToSend();
  bool TakeEarlyAnswer() noexcept;
  void ReportSent(std::size_t bytes, std::size_t headBytes, std::int64_t total);
  bool FeedHead();
  void ReceiveMore();
  void TakeTrailers();
  bool IsReusable();

  ConnectionPtr connection_;
  TransferWatch& watch_;
  HeadReader reader_;
  BodyFraming framing_;
  bool answersHead_;
  bool answeredEarly_ = false;
  std::int64_t sent_ = 0;
  std::int64_t bodyDone_ = 0;
};

}  // namespace qv
