#include "devservice/control/ordered_fault.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace qv::devservice {
namespace {

using nlohmann::json;

struct KindRow {
  const char* name;
  FaultKind kind;
  int least;
  int most;
};

constexpr int kAny = std::numeric_limits<int>::max();
constexpr KindRow kKinds[] = {
    {"fault", FaultKind::kFault, 1, kAny},
    {"status", FaultKind::kStatus, 200, 599},
    {"cut", FaultKind::kCut, 0, kAny},
    {"silence", FaultKind::kSilence, 1, 600000},
};

[[noreturn]] void Refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

std::string TextIn(const json& order, const char* key) {
  const auto found = order.find(key);
  if (found == order.end()) return "";
  if (!found->is_string()) Refuse(std::string("The ") + key + " of the order is not a text.");
  return found->get<std::string>();
}

const KindRow& KindIn(const json& order) {
  const std::string name = TextIn(order, "kind");
  for (const KindRow& row : kKinds)
    if (name == row.name) return row;
  Refuse("The kind of the order is not one of fault, status, cut and silence.");
}

int NumberIn(const json& order, const KindRow& kind) {
  const json none(0);
  const auto found = order.find("number");
  // Not a copy: that takes stack for each level, and a body may have millions.
  const json& value = found == order.end() ? none : *found;
  if (!value.is_number_integer() || value < kind.least || value > kind.most)
    Refuse(std::string("The number of the kind ") + kind.name + " is not a whole number from " +
           std::to_string(kind.least) + " to " + std::to_string(kind.most) + ".");
  const int number = value.get<int>();
  // Clients read no body after these two, whatever the head says.
  if (kind.kind == FaultKind::kStatus && (number == 204 || number == 304))
    Refuse("An answer with this status has no text.");
  return number;
}

void CheckKeys(const json& order) {
  constexpr std::string_view kKeys[] = {"kind", "number", "text", "action"};
  for (const auto& item : order.items())
    if (std::find(std::begin(kKeys), std::end(kKeys), item.key()) == std::end(kKeys))
      Refuse("The order has a key other than kind, number, text and action.");
}

bool Fits(const OrderedFault& fault, std::string_view action) {
  if (action.empty() && fault.kind == FaultKind::kFault) return false;
  return fault.action.empty() || fault.action == action;
}

}  // namespace

OrderedFault ParseOrder(std::string_view text) {
  const json order = json::parse(text, nullptr, false);
  if (!order.is_object()) Refuse("The order is not a JSON object.");
  CheckKeys(order);
  const KindRow& kind = KindIn(order);
  return {kind.kind, NumberIn(order, kind), TextIn(order, "text"), TextIn(order, "action")};
}

bool FaultOrders::Add(OrderedFault fault) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (waiting_.size() >= kMost) return false;
  waiting_.push_back(std::move(fault));
  return true;
}

std::optional<OrderedFault> FaultOrders::Take(std::string_view action) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = std::find_if(waiting_.begin(), waiting_.end(),
                                  [action](const OrderedFault& fault) { return Fits(fault, action); });
  if (found == waiting_.end()) return std::nullopt;
  OrderedFault fault = std::move(*found);
  waiting_.erase(found);
  return fault;
}

}  // namespace qv::devservice
