#include "tools/inspect/checked_call.h"

#include <algorithm>

#include "tools/inspect/client_reading.h"
#include "tools/inspect/server_probe.h"
#include "tools/inspect/shown_findings.h"
#include "tools/inspect/xml_tree.h"
#include "tools/report/failure.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

using scriptwells::Phase;
using scriptwells::Purpose;

const char* MethodOf(Purpose purpose) {
  if (purpose == Purpose::kOpenSession) return "CreateUserSession";
  return purpose == Purpose::kCloseSession ? "CloseUserSession" : "Execute";
}

bool IsFileTransfer(const scriptwells::Exchange& exchange) {
  return exchange.purpose == Purpose::kUpload || exchange.purpose == Purpose::kDownload;
}

const XmlNode* FindElement(const XmlNode& node, std::string_view local) {
  if (LocalName(node.name) == local) return &node;
  for (const XmlNode& child : node.children)
    if (const XmlNode* found = FindElement(child, local)) return found;
  return nullptr;
}

// The client reads no body without a length.
bool LacksBody(const scriptwells::Exchange& exchange) {
  return exchange.status != 0 && exchange.answerBody.empty() && !IsFileTransfer(exchange);
}

// Of an answer that did not come in full, nothing can be said about the body.
void KeepHeads(Findings& findings) {
  findings.erase(std::remove_if(findings.begin(), findings.end(),
                                [](const Finding& finding) { return finding.part == Part::kBody; }),
                 findings.end());
}

bool Holds(const Findings& findings, Rule rule) {
  return std::any_of(findings.begin(), findings.end(),
                     [&](const Finding& finding) { return finding.rule == rule; });
}

}  // namespace

CheckedCalls::CheckedCalls(const SessionSettings& settings, std::vector<ShownFinding>& findings)
    : settings_(settings), shown_(findings) {
  secrets_.Add(settings.credentials.password);
  const std::chrono::milliseconds total = settings.options.totalTimeout;
  if (total.count() > 0) end_ = std::chrono::steady_clock::now() + total;
}

scriptwells::Options CheckedCalls::Options() {
  scriptwells::Options options = settings_.options;
  options.cancel = InterruptToken();
  options.showSecrets = true;  // findings are masked when they are shown, so that their offsets are right
  options.listener = [this](const scriptwells::Exchange& exchange) { Look(exchange); };
  return options;
}

void CheckedCalls::Look(const scriptwells::Exchange& exchange) {
  exchanges_.push_back(exchange);
  LearnSecrets(exchange);
}

void CheckedCalls::LearnSecrets(const scriptwells::Exchange& exchange) {
  const RawAnswer answer{{}, exchange.answerHead, exchange.answerBody};
  if (exchange.purpose == Purpose::kOpenSession) secrets_.Add(SessionIdIn(answer));
  if (exchange.purpose != Purpose::kUpload) return;
  const std::size_t ticket = exchange.requestHead.find('=');
  const std::size_t end = exchange.requestHead.find_first_of("=& \r\n", ticket + 1);
  if (ticket < end) secrets_.Add(std::string_view(exchange.requestHead).substr(ticket + 1, end - ticket - 1));
}

CallOutcome CheckedCalls::Make(const std::function<void()>& call) {
  if (end_ && std::chrono::steady_clock::now() > *end_)
    throw Failure(ExitStatus::kTimeout, "the time of --max-time is over");
  exchanges_.clear();
  CallOutcome outcome;
  const auto begin = std::chrono::steady_clock::now();
  try {
    call();
  } catch (const scriptwells::Error& error) {
    ThrowIfInterrupted();
    outcome.error = error;
    outcome.isFault = IsFault(error);
    outcome.isTimeout = dynamic_cast<const scriptwells::TimeoutError*>(&error) != nullptr;
  }
  outcome.time =
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
  Examine(outcome);
  return outcome;
}

CallOutcome CheckedCalls::MakeStep(const std::string& step, const std::function<void()>& call) {
  CallOutcome outcome = Make(call);
  for (const Finding& finding : outcome.findings) Add(step, finding, outcome.answer);
  return outcome;
}

void CheckedCalls::Examine(CallOutcome& outcome) {
  for (const scriptwells::Exchange& exchange : exchanges_) {
    if (IsFileTransfer(exchange)) continue;
    outcome.answer = {MethodOf(exchange.purpose), exchange.answerHead, exchange.answerBody};
    if (outcome.error && LacksBody(exchange)) {
      std::string failure;
      RawAnswer again = AskAgain(settings_, exchange, failure);
      if (!again.head.empty()) outcome.answer = {MethodOf(exchange.purpose), again.head, again.body};
      secrets_.Add(exchange.purpose == Purpose::kOpenSession ? SessionIdIn(outcome.answer) : std::string());
    }
    FindHttpFaults(outcome.answer, outcome.findings);
    FindEnvelopeFaults(outcome.answer, outcome.findings);
    if (!outcome.findings.empty()) break;  // they are about this answer
  }
  if (!outcome.error || outcome.isFault) return;
  const std::optional<Rule> rule = outcome.isTimeout ? Rule::kInTime : RuleOfSilence(*outcome.error);
  if (rule) {
    KeepHeads(outcome.findings);
    if (outcome.isTimeout) outcome.findings.clear();  // it may have been on its way
    if (!Holds(outcome.findings, *rule))
      outcome.findings.push_back({*rule, Part::kNone, 0, 0, outcome.error->message()});
  } else if (!StopsClients(outcome.findings) && outcome.error->phase() == Phase::kAnswer) {
    outcome.findings.push_back({Rule::kUnderstood, Part::kNone, 0, 0, outcome.error->message()});
  }
}

void CheckedCalls::Add(const std::string& step, const Finding& finding, const RawAnswer& answer) {
  AddFinding(finding, answer, step, secrets_, shown_);
}

std::string SessionIdIn(const RawAnswer& answer) {
  const XmlTree tree = ReadXml(answer.body, CharsetOf(answer.head));
  const XmlNode* response = tree.root ? FindElement(*tree.root, "CreateUserSessionResponse") : nullptr;
  const XmlNode* id = response == nullptr ? nullptr : response->FirstElement();
  return id == nullptr ? std::string() : id->OwnText();
}

}  // namespace qv::cli
