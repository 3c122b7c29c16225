// Odd answers that a test or the command line orders.
#pragma once

#include <cstdint>
#include <string>

namespace qv::devservice {

struct OddOrder {
  std::string names;           // "cut+ns2"; empty: removes all orders
  std::string action;          // "Execute"; empty for any; names about files meet any transfer
  std::uint32_t requests = 1;  // so many get it; 0: all to come
  double chance = 1;           // for each request; below 1 only with `requests` 0
  std::uint32_t seed = 1;      // of the chances: the same ones for the same seed
};

}  // namespace qv::devservice
