#include "devservice/control/control.h"

#include <stdexcept>
#include <utility>

#include "devservice/soap/soap_answer.h"
#include "devservice/values/random_id.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

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

// A sink whose last answer is spoiled.
class SpoilingSink : public BodySink {
 public:
  SpoilingSink(std::unique_ptr<BodySink> sink, OrderedFault fault)
      : sink_(std::move(sink)), fault_(std::move(fault)) {}

  std::optional<HttpAnswer> Write(const char* bytes, std::size_t count) override {
    return sink_->Write(bytes, count);
  }
  HttpAnswer Finish() override { return Spoiled(sink_->Finish(), fault_); }

 private:
  std::unique_ptr<BodySink> sink_;
  const OrderedFault fault_;
};

BodyPlan SpoiledPlan(BodyPlan plan, const OrderedFault& fault) {
  if (fault.kind == FaultKind::kStatus) return {PlainAnswer(fault.number, fault.text), nullptr};
  if (plan.refusal) plan.refusal = Spoiled(std::move(*plan.refusal), fault);
  if (plan.sink) plan.sink = std::make_unique<SpoilingSink>(std::move(plan.sink), fault);
  return plan;
}

}  // namespace

Control::Control(RequestHandler& handler, OddOrders& odds, ServiceStats& stats)
    : path_("/control/" + RandomId()), handler_(handler), odds_(odds), stats_(stats) {}

bool Control::Owns(std::string_view path) const {
  return StartsWith(path, path_) && StartsWith(path.substr(path_.size()), "/");
}

std::optional<HttpAnswer> Control::Refuse(const HttpRequest& head) {
  return handler_.Refuse(head);
}

BodyPlan Control::PlanBody(const HttpRequest& head) {
  if (Owns(head.path)) return {};
  BodyPlan plan = handler_.PlanBody(head);
  if (!plan.refusal && !plan.sink) return plan;  // Handle gets the whole request.
  log_.Add(head, "");
  const std::optional<OrderedFault> fault = orders_.Take("");
  return fault ? SpoiledPlan(std::move(plan), *fault) : std::move(plan);
}

HttpAnswer Control::Handle(const HttpRequest& request) {
  if (Owns(request.path)) return HandlePage(request);
  const std::string action = ActionIn(request.soapAction);
  log_.Add(request, action);
  const std::optional<OrderedFault> fault = orders_.Take(action);
  return fault ? HandleWith(*fault, request, action) : handler_.Handle(request);
}

HttpAnswer Control::HandleWith(const OrderedFault& fault, const HttpRequest& request,
                               const std::string& action) {
  if (fault.kind == FaultKind::kCut || fault.kind == FaultKind::kSilence)
    return Spoiled(handler_.Handle(request), fault);
  if (std::atomic<std::uint64_t>* count = CounterOf(stats_, action)) ++*count;
  if (fault.kind == FaultKind::kStatus) return PlainAnswer(fault.number, fault.text);
  ++stats_.faults;
  return WriteFault({fault.number, fault.text, "control", false}, {});
}

HttpAnswer Control::HandlePage(const HttpRequest& request) {
  const std::string_view page = std::string_view(request.path).substr(path_.size() + 1);
  const bool gets = request.method == "GET";
  if (page == "counts" && gets) return Counts();
  if (page == "requests" && gets) return JsonAnswer(log_.Json());
  if (page == "events" && gets) return Events();
  if (page == "faults" && request.method == "POST") return Order(request);
  if (page == "odd" && gets) return JsonAnswer(OddNamesJson());
  if (page == "odd" && request.method == "POST") return OrderOdd(request);
  if (page == "counts" || page == "requests" || page == "events")
    return PlainAnswer(405, "This page takes GET only.\n");
  if (page == "faults") return PlainAnswer(405, "Faults are ordered with POST.\n");
  return PlainAnswer(404, "There is no such page. Pages: counts, requests, events, faults, odd\n");
}

HttpAnswer Control::Counts() const {
  HttpRequest stats;
  stats.method = "GET";
  stats.path = "/stats";
  return handler_.Handle(stats);
}

HttpAnswer Control::Events() const {
  HttpAnswer answer;
  answer.contentType = "text/event-stream";
  answer.headers = "Cache-Control: no-store\r\n";
  answer.delivery = Delivery::kCloseDelimited;
  answer.stream = [this, last = std::uint64_t{0}]() mutable { return log_.EventsAfter(last); };
  return answer;
}

HttpAnswer Control::Order(const HttpRequest& request) {
  return Ordered(request, [this](const std::string& text) {
    OrderedFault fault = ParseOrder(text);
    if (!fault.action.empty() && CounterOf(stats_, fault.action) == nullptr)
      throw std::invalid_argument("The action of the order is none of the service.");
    return orders_.Add(std::move(fault));
  });
}

HttpAnswer Control::OrderOdd(const HttpRequest& request) {
  return Ordered(request, [this](const std::string& text) { return odds_.Add(ParseOddOrder(text)); });
}

}  // namespace qv::devservice
