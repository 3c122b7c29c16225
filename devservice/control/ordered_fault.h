// Faults that a test orders for requests to come.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace qv::devservice {

enum class FaultKind {
  kFault,    // a SOAP fault with the number and text; nothing is run
  kStatus,   // the HTTP status `number` with the text; nothing is run
  kCut,      // the answer is cut off in the middle
  kSilence,  // the answer comes `number` milliseconds later
};

struct OrderedFault {
  FaultKind kind = FaultKind::kFault;
  int number = 0;
  std::string text;
  std::string action;  // "Execute"; empty for any request
};

// Parses {"kind": "fault", "number": 5, "text": "...", "action": "Execute"}. Only `kind` and the number of
// those that have one are required. Does not know which actions there are. Throws std::invalid_argument with
// the reason. Pure; any thread.
OrderedFault ParseOrder(std::string_view text);

// The orders that wait for their requests. Thread-safe.
class FaultOrders {
 public:
  static constexpr std::size_t kMost = 1000;

  // False, and nothing kept, when too many wait.
  bool Add(OrderedFault fault);
  // Removes the oldest order for such a request. An empty action is that of a request that is not SOAP, which
  // gets no SOAP fault.
  std::optional<OrderedFault> Take(std::string_view action);

 private:
  std::mutex mutex_;
  std::deque<OrderedFault> waiting_;
};

}  // namespace qv::devservice
