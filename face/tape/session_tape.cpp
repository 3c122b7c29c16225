#include "face/tape/session_tape.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "face/exchange/learned_secrets.h"
#include "face/tape/sha256.h"
#include "face/tape/typed_values.h"
#include "face/text/unsafe_characters.h"
#include "qvscriptwells/http_component.h"
#include "scriptwells/types.h"

namespace scriptwells {

namespace {

// "report.pdf, 8 bytes, SHA-256 9f86...": neither its folder nor its content.
std::string FileText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  Sha256 digest;
  std::size_t bytes = 0;
  std::vector<char> piece(std::size_t{64} * 1024);
  do {
    file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    const auto count = static_cast<std::size_t>(file.gcount());
    digest.Add({piece.data(), count});
    bytes += count;
  } while (file);
  if (!file.eof())
    throw Error(Phase::kLocalFile, "cannot read the file " + path + " for the tape: " + std::strerror(errno));
  return path.substr(path.rfind('/') + 1) + ", " + std::to_string(bytes) + " bytes, SHA-256 " + digest.Hex() +
         "\n";
}

std::string Milliseconds(std::chrono::microseconds time) {
  char text[48];
  static_cast<void>(std::snprintf(text, sizeof text, "%.1f ms", static_cast<double>(time.count()) / 1000));
  return text;
}

std::string TimesOf(const Exchange& exchange) {
  return DateTime::From(exchange.begin).ToString() + "Z, connecting " + Milliseconds(exchange.connecting) +
         ", waiting " + Milliseconds(exchange.waiting) + ", total " + Milliseconds(exchange.total);
}

bool IsCall(Purpose purpose) {
  return purpose == Purpose::kExecute || purpose == Purpose::kUploadAddress;
}

// What the answer to such a request holds by its place. `body` is UTF-8.
std::vector<PlacedKind> SecretsOfAnswer(Purpose purpose, std::string_view body) {
  if (purpose == Purpose::kOpenSession) return {{SecretKind::kSession, SessionIdsIn(body)}};
  if (purpose == Purpose::kUploadAddress) return {{SecretKind::kTicket, TicketsIn(body)}};
  return {};
}

// The call was ended, or refused an argument, before there was anything to record.
bool NothingHappened(const ExchangeRecord& record) {
  return !record.connected && record.failure &&
         (*record.failure == qv::HTTP_E_CANCELLED || *record.failure == qv::E_INVALIDARG);
}

}  // namespace

SessionTape::SessionTape(const std::string& record, const std::string& replay) {
  if (!replay.empty()) seat_.emplace(replay);
  std::error_code error;
  if (!record.empty() && !replay.empty() && std::filesystem::equivalent(record, replay, error))
    throw Error(Phase::kLocalFile, "the tape " + record + " cannot be played and recorded at once");
  if (!record.empty()) file_.emplace(record);
}

std::unique_ptr<qv::WireLine> SessionTape::Connect() {
  entry_ = TapeEntry();
  if (!seat_) return nullptr;
  if (const TapeEntry* const entry = seat_->PlayBreak()) {
    const TapedBreak& failure = *entry->failure;
    throw TapedFailure(static_cast<qv::HRESULT>(failure.code), WordsOf(failure),
                       failure.phase == Phase::kTls);
  }
  answer_ = std::make_shared<PlayedAnswer>();
  return std::make_unique<PlayedLine>(answer_);
}

void SessionTape::Request(const TapedRequest& request) {
  entry_.purpose = request.purpose;
  std::vector<PlacedKind> ofHead{{SecretKind::kSession, SessionIdsInHead(request.head)}};
  if (!request.file.empty()) {
    ofHead.push_back({SecretKind::kTicket, TicketsInHead(request.head)});
    entry_.file = mask_.Masked(FileText(request.file));
  }
  entry_.requestHead = mask_.Masked(request.head, ofHead);
  entry_.requestBody = mask_.Masked(request.body, {{SecretKind::kPassword, PasswordsIn(request.body)},
                                                   {SecretKind::kSession, SessionIdsOfCall(request.body)},
                                                   {SecretKind::kTicket, TicketsOfCall(request.body)}});
  if (seat_) *answer_ = PlayedAnswer(seat_->Play(entry_), mask_);
}

void SessionTape::AddAnswer(const ExchangeRecord& record, const Exchange& exchange) {
  const std::string& body = exchange.answerBody;
  // In another charset the places are known of the text alone.
  const std::string text = record.file.empty() ? record.BodyText() : body;
  for (const PlacedKind& kind : SecretsOfAnswer(entry_.purpose, text))
    for (const PlacedSecret& secret : kind.secrets) mask_.Know(kind.kind, secret.value);
  entry_.answerBody =
      mask_.Masked(body, text == body ? SecretsOfAnswer(entry_.purpose, body) : std::vector<PlacedKind>());
  entry_.answerHead = mask_.Masked(exchange.answerHead);
  if (IsCall(entry_.purpose)) entry_.arguments = TypedArguments(entry_.requestBody);
  entry_.answer = TypedAnswer(entry_.purpose, entry_.answerHead, entry_.answerBody);
}

void SessionTape::AddBreak(const ExchangeRecord& record) {
  if (!record.failure) return;
  entry_.failure.emplace();
  entry_.failure->phase = record.Reached();
  entry_.failure->code = static_cast<std::uint32_t>(*record.failure);
  entry_.failure->message = mask_.Masked(OneLine(record.message) + "\n");
}

void SessionTape::Ended(const ExchangeRecord& record, const Exchange& exchange) {
  const bool isEmpty = !entry_.HasRequest() && !record.failure;
  if (!file_ || isEmpty || NothingHappened(record)) return;
  entry_.session = file_->Session();
  entry_.purpose = record.purpose;
  entry_.server = mask_.Masked(record.Way() + "\n");
  entry_.times = TimesOf(exchange);
  AddAnswer(record, exchange);
  AddBreak(record);
  file_->Append(EntryText(entry_));
  entry_ = TapeEntry();
}

}  // namespace scriptwells
