#include "devservice/control/odd_orders.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "devservice/values/service_stats.h"

namespace qv::devservice {
namespace {

using nlohmann::json;

constexpr std::uint32_t kMostRequests = 1000000000;

[[noreturn]] void Refuse(const std::string& reason) {
  throw std::invalid_argument(reason);
}

// Not a copy: that takes stack for each level, and a body may have millions.
const json& ValueIn(const json& order, const char* key, const json& usual) {
  const auto found = order.find(key);
  return found == order.end() ? usual : *found;
}

std::string TextIn(const json& order, const char* key) {
  const json none("");
  const json& value = ValueIn(order, key, none);
  if (!value.is_string()) Refuse(std::string("The ") + key + " of the order is not a text.");
  return value.get<std::string>();
}

std::uint32_t NumberIn(const json& order, const char* key, std::uint32_t usual, std::uint32_t most) {
  const json otherwise(usual);
  const json& value = ValueIn(order, key, otherwise);
  if (!value.is_number_integer() || value < 0 || value > most)
    Refuse(std::string("The number of ") + key + " is not a whole number from 0 to " + std::to_string(most) +
           ".");
  return value.get<std::uint32_t>();
}

double ChanceIn(const json& order) {
  const json always(1);
  const json& value = ValueIn(order, "chance", always);
  if (!value.is_number()) Refuse("The chance of the order is not a number.");
  return value.get<double>();
}

void CheckKeys(const json& order) {
  constexpr std::string_view kKeys[] = {"names", "action", "requests", "chance", "seed"};
  for (const auto& item : order.items())
    if (std::find(std::begin(kKeys), std::end(kKeys), item.key()) == std::end(kKeys))
      Refuse("The order has a key other than names, action, requests, chance and seed.");
}

// Adds those of the names that have this use. Whether there are any.
bool AddNames(std::string_view names, OddUse use, OddForms& forms) {
  const std::vector<OddName> all = OddNames();
  bool added = false;
  for (const std::string_view name : SplitOddNames(names)) {
    const auto found =
        std::find_if(all.begin(), all.end(), [name](const OddName& odd) { return odd.name == name; });
    if (found != all.end() && found->use == use) added = AddOddForm(name, forms);
  }
  return added;
}

bool Fits(const OddOrder& order, OddUse use, std::string_view action) {
  OddForms none;
  if (!AddNames(order.names, use, none)) return false;
  return use == OddUse::kFiles || order.action.empty() || order.action == action;
}

// The same numbers with every library: std::bernoulli_distribution may draw differently.
bool Happens(double chance, std::mt19937& random) {
  constexpr double kNumbers = 4294967296.0;
  return chance >= 1 || static_cast<double>(random()) < chance * kNumbers;
}

}  // namespace

void CheckOddOrder(const OddOrder& order) {
  for (const std::string_view name : SplitOddNames(order.names)) {
    OddForms none;
    if (!AddOddForm(name, none))
      Refuse("There is no odd answer of the name \"" + std::string(name) + "\". Names: " + OddFormNames());
  }
  if (!order.action.empty() && ActionIn(order.action) != order.action)
    Refuse("The action of the order is none of the service.");
  if (!(order.chance > 0 && order.chance <= 1)) Refuse("The chance of the order is not above 0 and up to 1.");
  if (order.chance < 1 && order.requests > 0) Refuse("An order has a number of requests or a chance.");
}

OddOrder ParseOddOrder(std::string_view text) {
  const json parsed = json::parse(text, nullptr, false);
  if (!parsed.is_object()) Refuse("The order is not a JSON object.");
  CheckKeys(parsed);
  if (!parsed.contains("names")) Refuse("The order has no names.");
  OddOrder order{TextIn(parsed, "names"), TextIn(parsed, "action")};
  order.chance = ChanceIn(parsed);
  order.requests = NumberIn(parsed, "requests", order.chance < 1 ? 0 : 1, kMostRequests);
  order.seed = NumberIn(parsed, "seed", 1, std::numeric_limits<std::uint32_t>::max());
  CheckOddOrder(order);
  return order;
}

std::string OddNamesJson() {
  nlohmann::ordered_json names = nlohmann::ordered_json::array();
  for (const OddName& odd : OddNames()) names.push_back({{"name", odd.name}, {"group", odd.group}});
  return nlohmann::ordered_json{{"names", std::move(names)}}.dump() + "\n";
}

OddOrders::OddOrders(const std::vector<OddOrder>& orders) {
  for (const OddOrder& order : orders) Add(order);
}

bool OddOrders::Add(const OddOrder& order) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (order.names.empty()) {
    waiting_.clear();
    return true;
  }
  if (waiting_.size() >= kMost) return false;
  waiting_.push_back({order, std::mt19937(order.seed)});
  return true;
}

void OddOrders::Meet(OddUse use, std::string_view action, OddForms& forms) {
  const std::lock_guard<std::mutex> lock(mutex_);
  bool counted = false;
  for (auto at = waiting_.begin(); at != waiting_.end();) {
    OddOrder& order = at->order;
    const bool once = order.requests > 0;
    const bool met = !(once && counted) && Fits(order, use, action) && Happens(order.chance, at->random);
    if (met) AddNames(order.names, use, forms);
    counted = counted || (met && once);
    if (met && once && --order.requests == 0)
      at = waiting_.erase(at);
    else
      ++at;
  }
}

}  // namespace qv::devservice
