#include "devservice/control/control.h"

#include <stdexcept>
#include <utility>

#include "devservice/soap/soap_answer.h"
#include "devservice/values/random_id.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kPagePath = "/page/";
constexpr int kMostWatchers = 16;  // Each takes a connection and its thread.
constexpr std::size_t kMostOrderBytes = std::size_t{1} << 20;

HttpAnswer JsonAnswer(std::string text) {
  HttpAnswer answer = PlainAnswer(200, std::move(text));
  answer.contentType = "application/json";
  return answer;
}

// `add` parses and keeps the order, or returns false if too many wait.
template <typename Add>
HttpAnswer Ordered(const HttpRequest& request, const Add& add) {
  if (request.body.size() > kMostOrderBytes) return PlainAnswer(400, "The order is longer than 1 MiB.\n");
  try {
    if (!add(request.body)) return PlainAnswer(400, "Too many orders wait for a request.\n");
    return JsonAnswer("{}\n");
  } catch (const std::invalid_argument& error) {
    return PlainAnswer(400, error.what() + std::string("\n"));
  }
}

// What an order changes in an answer that is there already.
HttpAnswer Spoiled(HttpAnswer answer, const OrderedFault& fault) {
  if (fault.kind == FaultKind::kCut) answer.delivery = Delivery::kCut;
  if (fault.kind == FaultKind::kSilence) answer.silence = std::chrono::milliseconds(fault.number);
  return answer;
}

using LastStep = std::function<HttpAnswer(HttpAnswer)>;

// A sink whose answers go through one more step.
class SteppedSink : public BodySink {
 public:
  SteppedSink(std::unique_ptr<BodySink> sink, LastStep step)
      : sink_(std::move(sink)), step_(std::move(step)) {}

  std::optional<HttpAnswer> Write(const char* bytes, std::size_t count) override {
    std::optional<HttpAnswer> refusal = sink_->Write(bytes, count);
    if (refusal) refusal = step_(std::move(*refusal));
    return refusal;
  }
  HttpAnswer Finish() override { return step_(sink_->Finish()); }

 private:
  std::unique_ptr<BodySink> sink_;
  const LastStep step_;
};

BodyPlan Stepped(BodyPlan plan, const LastStep& step) {
  if (plan.refusal) plan.refusal = step(std::move(*plan.refusal));
  if (plan.sink) plan.sink = std::make_unique<SteppedSink>(std::move(plan.sink), step);
  return plan;
}

// One of the clients that wait for events.
class Watcher {
 public:
  explicit Watcher(std::shared_ptr<std::atomic<int>> count) : count_(std::move(count)) { ++*count_; }
  ~Watcher() { --*count_; }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  bool IsOneTooMany() const { return *count_ > kMostWatchers; }

 private:
  std::shared_ptr<std::atomic<int>> count_;
};

}  // namespace

Control::Control(Parts parts, bool hasPath)
    : path_(hasPath ? "/control/" + RandomId() : ""), parts_(std::move(parts)) {}

bool Control::Owns(std::string_view path) const {
  return !path_.empty() && StartsWith(path, path_) && StartsWith(path.substr(path_.size()), "/");
}

bool Control::IsForPage(std::string_view path) const {
  return parts_.page != nullptr && StartsWith(path, kPagePath);
}

// The page has one more method than the service.
std::optional<HttpAnswer> Control::Refuse(const HttpRequest& head) {
  HttpRequest asked = head;
  if (head.method == "DELETE" && IsForPage(head.path)) asked.method = "POST";
  return parts_.handler.Refuse(asked);
}

BodyPlan Control::PlanBody(const HttpRequest& head) {
  if (Owns(head.path)) return {};
  if (IsForPage(head.path)) return parts_.page->PlanBody(head);
  BodyPlan plan = parts_.handler.PlanBody(head);
  if (!plan.refusal && !plan.sink) return plan;  // Handle gets the whole request.
  const std::uint64_t number = log_.Add(head, "");
  const std::optional<OrderedFault> fault = orders_.Take("");
  if (fault && fault->kind == FaultKind::kStatus) plan = {PlainAnswer(fault->number, fault->text), nullptr};
  return Stepped(std::move(plan), [this, number, fault](HttpAnswer answer) {
    log_.AddAnswer(number, answer);
    return fault ? Spoiled(std::move(answer), *fault) : answer;
  });
}

HttpAnswer Control::Handle(const HttpRequest& request) {
  if (Owns(request.path))
    return Answer(std::string_view(request.path).substr(path_.size() + 1), request, false);
  if (IsForPage(request.path)) return parts_.page->Handle(request, *this);
  const std::string action = ActionIn(request.soapAction);
  const std::uint64_t number = log_.Add(request, action);
  HttpAnswer answer = Perform(request, action);
  log_.AddAnswer(number, answer);
  return answer;
}

HttpAnswer Control::Perform(const HttpRequest& request, const std::string& action) {
  const std::optional<OrderedFault> fault = orders_.Take(action);
  return fault ? HandleWith(*fault, request, action) : parts_.handler.Handle(request);
}

HttpAnswer Control::HandleWith(const OrderedFault& fault, const HttpRequest& request,
                               const std::string& action) {
  if (fault.kind == FaultKind::kCut || fault.kind == FaultKind::kSilence)
    return Spoiled(parts_.handler.Handle(request), fault);
  if (std::atomic<std::uint64_t>* count = CounterOf(parts_.stats, action)) ++*count;
  if (fault.kind == FaultKind::kStatus) return PlainAnswer(fault.number, fault.text);
  ++parts_.stats.faults;
  return WriteFault({fault.number, fault.text, "control", false}, {});
}

HttpAnswer Control::AskControl(const std::string& name, const HttpRequest& request) {
  return Answer(name, request, true);
}

HttpAnswer Control::Answer(std::string_view page, const HttpRequest& request, bool masked) {
  const bool gets = request.method == "GET";
  if (page == "counts" && gets) return Counts();
  if (page == "requests" && gets) return JsonAnswer(log_.Json(masked));
  if (page == "events" && gets) return Events();
  if (page == "faults" && request.method == "POST") return Order(request);
  if (page == "odd" && gets) return JsonAnswer(OddNamesJson());
  if (page == "odd" && request.method == "POST") return OrderOdd(request);
  if (page == "counts" || page == "requests" || page == "events")
    return PlainAnswer(405, "This page takes GET only.\n");
  if (page == "faults") return PlainAnswer(405, "Faults are ordered with POST.\n");
  if (page == "odd") return PlainAnswer(405, "This page takes GET and POST only.\n");
  return PlainAnswer(404, "There is no such page. Pages: counts, requests, events, faults, odd\n");
}

HttpAnswer Control::Counts() const {
  HttpRequest stats;
  stats.method = "GET";
  stats.path = "/stats";
  return parts_.handler.Handle(stats);
}

HttpAnswer Control::Events() {
  const auto watcher = std::make_shared<Watcher>(watchers_);
  if (watcher->IsOneTooMany()) return PlainAnswer(503, "16 clients watch the events already.\n");
  HttpAnswer answer;
  answer.contentType = "text/event-stream";
  answer.headers = "Cache-Control: no-store\r\n";
  answer.delivery = Delivery::kCloseDelimited;
  answer.stream = [this, watcher, last = std::uint64_t{0}]() mutable { return log_.EventsAfter(last); };
  return answer;
}

HttpAnswer Control::Order(const HttpRequest& request) {
  return Ordered(request, [this](const std::string& text) {
    OrderedFault fault = ParseOrder(text);
    if (!fault.action.empty() && CounterOf(parts_.stats, fault.action) == nullptr)
      throw std::invalid_argument("The action of the order is none of the service.");
    return orders_.Add(std::move(fault));
  });
}

HttpAnswer Control::OrderOdd(const HttpRequest& request) {
  return Ordered(request, [this](const std::string& text) { return parts_.odds.Add(ParseOddOrder(text)); });
}

}  // namespace qv::devservice
