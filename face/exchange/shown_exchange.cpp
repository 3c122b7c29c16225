#include "face/exchange/shown_exchange.h"

#include <cstdio>
#include <utility>

namespace scriptwells {

namespace {

std::string FailureOf(const ExchangeRecord& record) {
  if (!record.failure || !record.message.empty()) return record.message;
  char code[32];
  static_cast<void>(
      std::snprintf(code, sizeof code, "failure 0x%08X", static_cast<unsigned>(*record.failure)));
  return code;
}

}  // namespace

std::chrono::microseconds ShownExchange::Since(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
}

void ShownExchange::Request(std::string_view head, std::string_view body) {
  if (texts_) exchange_.requestHead = head;
  if (texts_) exchange_.requestBody = body;
  requestBegin_ = Clock::now();
}

void ShownExchange::Connected(bool isKeptConnection) {
  if (!isKeptConnection) exchange_.connecting += Since(begin_);
}

void ShownExchange::Answering(std::string_view bytes) {
  if (!std::exchange(answering_, true)) exchange_.waiting = Since(requestBegin_);
  if (texts_) exchange_.answerHead += bytes;
}

void ShownExchange::Transferred(bool sending, std::int64_t bytes) {
  (sending ? exchange_.sentBytes : exchange_.receivedBytes) = bytes;
}

Exchange ShownExchange::Ended(const ExchangeRecord& record, const Masking* secrets) {
  Exchange shown = std::move(exchange_);
  shown.purpose = record.purpose;
  shown.server = record.Server();
  shown.proxy = qv::ToUtf8(record.proxy);
  if (texts_) shown.answerBody = record.body.view();
  shown.status = record.status;
  shown.file = record.file;
  shown.failure = FailureOf(record);
  shown.begin = beginOfDay_;
  shown.total = Since(begin_);
  if (secrets != nullptr)
    for (std::string* text : {&shown.server, &shown.proxy, &shown.requestHead, &shown.requestBody,
                              &shown.answerHead, &shown.answerBody, &shown.file, &shown.failure})
      *text = secrets->Masked(std::move(*text));
  return shown;
}

}  // namespace scriptwells
