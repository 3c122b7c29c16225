#include "tools/inspect/explained_message.h"

#include <algorithm>
#include <utility>

#include "tools/inspect/shown_findings.h"
#include "tools/system/interrupt.h"
#include "tools/transfer/failed_call.h"

namespace qv::cli {

namespace {

using scriptwells::Purpose;
using scriptwells::SavedExchange;

constexpr std::size_t kLongestText = 1000;

struct PurposeRow {
  Purpose purpose;
  const char* method;
};
constexpr PurposeRow kPurposes[] = {{Purpose::kOpenSession, "CreateUserSession"},
                                    {Purpose::kCloseSession, "CloseUserSession"},
                                    {Purpose::kExecute, "Execute"},
                                    {Purpose::kUploadAddress, "Execute"}};

// Of an answer that does not say its method, kExecute.
Purpose PurposeOf(const std::string& method) {
  for (const PurposeRow& row : kPurposes)
    if (method == row.method) return row.purpose;
  return Purpose::kExecute;
}

// Empty for transfers of files.
std::string MethodOf(Purpose purpose) {
  for (const PurposeRow& row : kPurposes)
    if (purpose == row.purpose) return row.method;
  return {};
}

// Editors may have written LF alone.
std::string WithLineEnds(const std::string& head) {
  std::string whole;
  for (const char c : head) {
    if (c == '\n' && (whole.empty() || whole.back() != '\r')) whole += '\r';
    whole += c;
  }
  return whole;
}

// The bytes of an answer as a server sends them. XML alone gets a head.
std::string SentBytes(const SavedMessage& message, const std::string& file) {
  if (!message.head.empty()) return WithLineEnds(message.head) + file.substr(message.bodyBegin);
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(message.body.size()) + "\r\n\r\n" +
         message.body;
}

// With the empty line: the body of a file is nothing to explain.
std::string HeadOf(const std::string& message) {
  const std::size_t end = message.find("\r\n\r\n");
  return message.substr(0, end == std::string::npos ? end : end + 4);
}

bool IsRefused(const ClientReading& reading) noexcept {
  return reading.result == ReadAs::kRefused || reading.result == ReadAs::kNothing;
}

// Says everything about a message, which must outlive the object.
class Explainer {
 public:
  Explainer(const std::string& text, const std::string& method)
      : text_(text), message_(ParseMessage(text, method)) {}

  // Before what follows. `known` are further ones.
  void MaskSecrets(const std::vector<std::string>& known);

  const SavedMessage& Message() const noexcept { return message_; }
  ExplainedMessage Request() const;
  ExplainedMessage Answer(const SavedExchange& exchange) const;

 private:
  ExplainedMessage Outlined(const char* kind) const;
  Place PlaceIn(bool isHead, std::size_t at) const;
  Findings FindingsOf(const SavedExchange& exchange, const ClientReading& reading) const;
  std::vector<ShownFinding> Shown(const Findings& findings) const;
  void Mask(ClientReading& reading) const;

  const std::string& text_;
  SavedMessage message_;
  KnownSecrets secrets_;
};

void Explainer::MaskSecrets(const std::vector<std::string>& known) {
  LearnSecrets(message_, secrets_);
  for (const std::string& secret : known) secrets_.Add(secret);
}

// Of the file. In chunks, of the body without them.
Place Explainer::PlaceIn(bool isHead, std::size_t at) const {
  if (message_.isChunked && !isHead) return PlaceOf(message_.body, at);
  return PlaceOf(text_, at + (isHead ? 0 : message_.bodyBegin));
}

ExplainedMessage Explainer::Outlined(const char* kind) const {
  ExplainedMessage explained;
  explained.kind = kind;
  explained.method = message_.method;
  for (OutlineLine& line : OutlineOf(message_)) {
    const Place place = PlaceIn(line.isHead, line.at);
    explained.lines.push_back({line.depth, secrets_.Masked(line.label), secrets_.Masked(line.text), place});
  }
  return explained;
}

// A request is not judged: servers differ in what they take.
ExplainedMessage Explainer::Request() const {
  ExplainedMessage explained = Outlined("request");
  if (!message_.tree.flaw || message_.body.empty()) return explained;
  const Place place = PlaceIn(false, message_.tree.flaw->at);
  explained.lines.push_back({0, "not well-formed",
                             message_.tree.flaw->message + ", line " + std::to_string(place.line) +
                                 ", column " + std::to_string(place.column),
                             place});
  return explained;
}

// Of an answer that did not come in full, nothing is said about the body.
Findings Explainer::FindingsOf(const SavedExchange& exchange, const ClientReading& reading) const {
  const std::string method = message_.method.empty() ? MethodOf(exchange.purpose) : message_.method;
  const RawAnswer answer{method, message_.head, message_.body};
  Findings findings;
  FindHttpFaults(answer, findings);
  if (!reading.rule) FindEnvelopeFaults(answer, findings);
  if (reading.rule && !StopsClients(findings))
    findings.push_back({*reading.rule, Part::kNone, 0, 0, reading.message});
  const bool isExplained = reading.result == ReadAs::kNothing ? !findings.empty() : StopsClients(findings);
  if (IsRefused(reading) && !isExplained)
    findings.push_back({Rule::kUnderstood, Part::kNone, 0, 0, reading.message});
  return findings;
}

std::vector<ShownFinding> Explainer::Shown(const Findings& findings) const {
  const RawAnswer answer{message_.method, message_.head, message_.body};
  std::vector<ShownFinding> shown;
  for (const Finding& finding : findings) AddFinding(finding, answer, "the answer", secrets_, shown);
  for (ShownFinding& finding : shown) {
    if (finding.part.empty()) continue;
    const Place place = PlaceIn(finding.part == "head", finding.at);
    finding.line = place.line;
    finding.column = place.column;
  }
  return shown;
}

void Explainer::Mask(ClientReading& reading) const {
  for (std::string& line : reading.value) line = secrets_.Masked(line);
  reading.message = secrets_.MaskedPart(reading.message, 0, kLongestText);
  reading.loss = secrets_.MaskedPart(reading.loss, 0, kLongestText);
}

ExplainedMessage Explainer::Answer(const SavedExchange& exchange) const {
  ExplainedMessage explained = Outlined("answer");
  explained.reading = ReadAsClient(exchange);
  const bool wasThere = !exchange.answer.empty() || explained.reading->rule;
  if (explained.reading->result != ReadAs::kFile && wasThere)
    explained.findings = Shown(FindingsOf(exchange, *explained.reading));
  Mask(*explained.reading);
  return explained;
}

ExplainedMessage ExplainFile(const std::string& file, const std::string& method, bool showSecrets) {
  Explainer explainer(file, method);
  if (!showSecrets) explainer.MaskSecrets({});
  if (explainer.Message().isRequest) return explainer.Request();
  SavedExchange exchange;
  exchange.purpose = PurposeOf(explainer.Message().method);
  exchange.answer = SentBytes(explainer.Message(), file);
  return explainer.Answer(exchange);
}

// Request and answer, as far as the exchange has them. What a tape masks is masked with --show-secrets, too.
void ExplainExchange(const SavedExchange& exchange, const std::string& title,
                     std::vector<ExplainedMessage>& explained) {
  const std::string method = MethodOf(exchange.purpose);
  const std::string request = method.empty() ? HeadOf(exchange.request) : exchange.request;
  const std::string answer = method.empty() ? HeadOf(exchange.answer) : exchange.answer;
  if (!request.empty()) {
    Explainer explainer(request, method);
    explainer.MaskSecrets(exchange.secrets);
    explained.push_back(explainer.Request());
    explained.back().title = title;
  }
  Explainer explainer(answer, method);
  explainer.MaskSecrets(exchange.secrets);
  explained.push_back(explainer.Answer(exchange));
  explained.back().title = title;
}

std::vector<ExplainedMessage> ExplainTape(const std::string& name, const std::string& file,
                                          std::size_t entry) {
  const std::vector<SavedExchange> exchanges =
      Translated([&] { return scriptwells::ExchangesOf(name, file); });
  if (entry > exchanges.size())
    throw Failure(ExitStatus::kLocal, "the tape has " + std::to_string(exchanges.size()) + " exchanges");
  std::vector<ExplainedMessage> explained;
  for (std::size_t number = 1; number <= exchanges.size(); ++number) {
    if (entry != 0 && number != entry) continue;
    ThrowIfInterrupted();
    const SavedExchange& exchange = exchanges[number - 1];
    ExplainExchange(exchange,
                    "exchange " + std::to_string(number) + ", line " + std::to_string(exchange.line) + ": " +
                        ToString(exchange.purpose),
                    explained);
  }
  return explained;
}

}  // namespace

bool ExplainedMessage::IsRefused() const noexcept {
  return reading && qv::cli::IsRefused(*reading);
}

std::vector<ExplainedMessage> ExplainMessages(const std::string& name, const std::string& file,
                                              std::size_t entry, const std::string& method,
                                              bool showSecrets) {
  if (scriptwells::IsTape(file)) return ExplainTape(name, file, entry);
  if (entry != 0) throw Failure(ExitStatus::kLocal, "--entry is for a tape, and " + name + " is none");
  std::vector<ExplainedMessage> explained;
  explained.push_back(ExplainFile(file, method, showSecrets));
  return explained;
}

}  // namespace qv::cli
