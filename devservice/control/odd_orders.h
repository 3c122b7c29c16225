// Odd answers that are ordered for requests to come.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "devservice/http/odd_forms.h"
#include "devservice/values/odd_order.h"

namespace qv::devservice {

// Parses {"names": "cut+ns2", "action": "Execute", "requests": 3}, or the same with "chance" and "seed" in
// place of "requests". Only `names` is required. Throws std::invalid_argument with the reason, as
// CheckOddOrder.
OddOrder ParseOddOrder(std::string_view text);

// Throws std::invalid_argument with the reason if a name or the action does not exist, or the chance is none.
void CheckOddOrder(const OddOrder& order);

// {"names": [{"name": "cut", "group": "answers"}, ...]}
std::string OddNamesJson();

// The orders that wait for their requests, and those for all of them. Thread-safe.
class OddOrders {
 public:
  static constexpr std::size_t kMost = 1000;

  // Those that are there from the start, as Add.
  explicit OddOrders(const std::vector<OddOrder>& orders = {});

  // `order` has been checked. False, and nothing kept, when there are too many.
  bool Add(const OddOrder& order);
  // Adds to `forms` what is ordered for such a request: the oldest order with a number of requests, which
  // counts it, and all without one. The action of a transfer is empty.
  void Meet(OddUse use, std::string_view action, OddForms& forms);

 private:
  struct Waiting {
    OddOrder order;
    std::mt19937 random;
  };

  std::mutex mutex_;
  std::deque<Waiting> waiting_;
};

}  // namespace qv::devservice
