// Feeds orders of the control interface: faults and odd answers, as JSON. Each is taken or refused with a
// reason.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "devservice/control/odd_orders.h"
#include "devservice/control/ordered_fault.h"

namespace {

using namespace qv::devservice;

void Require(bool holds) {
  if (!holds) std::abort();
}

void OrderOdd(const std::string& json) {
  const OddOrder order = ParseOddOrder(json);
  OddOrders orders;
  if (!orders.Add(order)) return;
  OddForms forms;
  for (int i = 0; i < 3; ++i) orders.Meet(OddUse::kCalls, "Execute", forms);
  orders.Meet(OddUse::kFiles, "", forms);
}

template <class Act>
void Try(const Act& act) {
  try {
    act();
  } catch (const std::invalid_argument& error) {
    Require(*error.what() != '\0');
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string json(reinterpret_cast<const char*>(data), size);
  Try([&] { OrderOdd(json); });
  Try([&] { static_cast<void>(ParseOrder(json)); });
  return 0;
}
