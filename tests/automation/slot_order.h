// The places of operations in the table of their interface: programs that were compiled against another
// header call by place, not by name.
#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

namespace qv {

// `operation` points at a variable that holds a pointer to a virtual member. Only differences between two of
// one interface mean something; the compilers of this platform keep the place in the first word.
inline std::ptrdiff_t PlaceOf(const void* operation) {
  std::ptrdiff_t place = 0;
  std::memcpy(&place, operation, sizeof place);
  return place;
}

constexpr std::ptrdiff_t kSlot = sizeof(void*);

// How many slots each operation is away from the first one.
template <auto... kOperations>
std::vector<std::ptrdiff_t> SlotsOf() {
  std::vector<std::ptrdiff_t> slots;
  const auto add = [&slots](auto operation) { slots.push_back(PlaceOf(&operation) / kSlot); };
  (add(kOperations), ...);
  for (std::size_t i = slots.size(); i > 0; --i) slots[i - 1] -= slots[0];
  return slots;
}

}  // namespace qv
