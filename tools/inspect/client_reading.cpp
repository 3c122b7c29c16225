#include "tools/inspect/client_reading.h"

#include "tools/transfer/failed_call.h"

namespace qv::cli {

namespace {

using scriptwells::Phase;
using scriptwells::Purpose;
using scriptwells::SavedExchange;
using scriptwells::Value;

// What a strict client says of an answer that others read.
std::string LossOf(const SavedExchange& exchange) {
  try {
    scriptwells::ReadSaved(exchange, true);
    return {};
  } catch (const scriptwells::Error& error) {
    return error.message();
  }
}

void ReadValue(const SavedExchange& exchange, ClientReading& reading) {
  const Value value = scriptwells::ReadSaved(exchange);
  reading.result = ReadAs::kValue;
  if (exchange.purpose == Purpose::kCloseSession) return;
  if (exchange.purpose == Purpose::kOpenSession) {
    reading.value = {"the id of a session, " + std::to_string(value.ToString().size()) + " bytes"};
    return;
  }
  if (value.IsEmpty()) reading.result = ReadAs::kNothing;
  reading.value = scriptwells::ShownLines(value);
  reading.loss = LossOf(exchange);
}

}  // namespace

bool IsFault(const scriptwells::Error& error) {
  return error.phase() == Phase::kScript || (error.phase() == Phase::kSession && error.number());
}

std::optional<Rule> RuleOfSilence(const scriptwells::Error& error) {
  if (dynamic_cast<const scriptwells::TimeoutError*>(&error) != nullptr) return Rule::kInTime;
  if (error.phase() == Phase::kReceive) return Rule::kWholeBody;
  const bool hasNoHead = error.phase() == Phase::kAnswer && error.status() == 0;
  if (error.phase() == Phase::kWait || error.phase() == Phase::kSend || hasNoHead) return Rule::kHttpAnswer;
  return {};
}

ClientReading ReadAsClient(const SavedExchange& exchange) {
  ClientReading reading;
  if (exchange.purpose == Purpose::kUpload || exchange.purpose == Purpose::kDownload) return reading;
  try {
    ReadValue(exchange, reading);
  } catch (const scriptwells::Error& error) {
    reading.result = IsFault(error) ? ReadAs::kFault : ReadAs::kRefused;
    reading.message = FailureOf(error).Message();
    reading.rule = RuleOfSilence(error);
  }
  return reading;
}

}  // namespace qv::cli
